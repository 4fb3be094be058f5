// SPDX-License-Identifier: GPL-3.0-or-later
// The sparse matrices of the whole model from those of its elements.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "solver/dofs/dofs.h"
#include "solver/elements/kinds.h"

// Numbers without a first value: memory that is first touched where it is filled, by all threads.
template <typename Number>
struct unfilled : std::allocator<Number> {
    template <typename Other>
    struct rebind {
        using other = unfilled<Other>;
    };
    template <typename Other, typename... Values>
    void construct(Other* at, Values&&... values) {
        if constexpr (sizeof...(Values) == 0)
            ::new (at) Other;
        else
            ::new (at) Other(std::forward<Values>(values)...);
    }
};

// Lower triangle by columns, rows ascending, diagonal first. Where processes share an analysis each
// holds what its own elements add to the unknowns of its part, and the matrix is the sum of all.
struct sparsematrix {
    std::vector<std::int64_t> start;
    std::vector<int, unfilled<int>> row;
    std::vector<double, unfilled<double>> value;
    sharingptr unknowns = std::make_shared<const sharing>();
    std::int64_t size() const { return std::int64_t(start.size()) - 1; }
};

// What is assembled of each element; pointmass: the mass of elements of one node alone.
enum class part { stiffness, mass, pointmass };

// The pattern that the graph of owners gives, values 0.
sparsematrix makepattern(const dofmap& d, const nodegraph& graph, const std::vector<int>& order);

// Adds the elements' matrices. Same result whatever the number of threads.
void assemble(const model& m, const settings& s, const dofmap& d, part what, sparsematrix& a,
              runlog& log);

// Adds to the diagonal what stands at a degree of freedom of a node, such as a nodal mass.
void addatdof(const dofmap& d, std::size_t dof, double value, sparsematrix& a);

std::vector<double> diagonalof(const sparsematrix& a);

// y = a x for several columns of x, each a.size() long.
void multiply(const sparsematrix& a, const double* x, double* y, int columns);

// The forces that the constants of the degrees of freedom (prescribed values) put on all others
// through the elements; empty when all constants are 0.
std::vector<double> constantforces(const model& m, const settings& s, const dofmap& d);
