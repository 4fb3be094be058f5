// SPDX-License-Identifier: GPL-3.0-or-later
// Loads of a case: nodal forces, distributed loads on elements, accelerations of masses, and what
// sea and wind do to the elements (waveloads).
#pragma once

#include <vector>

#include "solver/dofs/dofs.h"
#include "solver/elements/kinds.h"
#include "solver/loads/edgeloads.h"
#include "solver/loads/waveloads.h"

// Refuses a case of acceleration with a switch that is none; tells masses below 0.
void checkacceleration(const model& m, int lc, runlog& log);

// Loads in directions that the analysis does not have.
struct absentloads {
    long count = 0;
    // Of the largest force; of the largest moment where there is no force. Of equals the lowest
    // node.
    int node = 0, dof = 0;
    double largest = 0;
    void add(int n, int direction, double value);
    void addothers();  // what other processes have found
};

// The load of a row on a plate where its surface has this normal (whose size is an area). Along e3
// it is a pressure: normal to the surface at each place, also where the corners leave a plane, so
// that it balances on a closed vessel.
vec3 plateload(const element& e, const elementrow& row, const vec3& normal);

// What an even load of 1 along a local axis of an element comes to at its nodes, found once for the
// rows of all cases and for elements of one model that are alike and follow each other.
class unitloads {
  public:
    void take(const element& of);
    const elvector& along(int direction);  // 1..3

  private:
    element e;          // the last one, with its first corner in the origin
    elvector found[3];  // empty while nobody has asked
};

class caseloads {
  public:
    caseloads(const model& m, const settings& s, int lc);
    // What accelerations meet: the mass of elements as a load, spread like any other where they
    // have four nodes; their mass matrices; or of the elements those of one node alone.
    enum class inertia { spread, matrices, points };
    // A case that is not of the model.
    caseloads(const model& m, const settings& s, const loadcase& c, int number, inertia of);

    // True where the case may put distributed load on elements at all.
    bool loadselements() const;
    // Adds the nodal forces that stand for the distributed load on this element (model axes,
    // nodes x nodedofs); false where there is none. unit: of this element, for all its cases.
    bool onelement(const element& e, unitloads& unit, elvector& f) const;
    // The forces a length on a line element, part by part, what onelement stands for.
    // Returns the moments a length (local axes) of its turning mass.
    vec3 online(const element& e, const linesink& sink) const;
    // All forces of some cases of a model by degree of freedom; f: d.dofs() numbers a case,
    // overwritten. Forces in directions that the analysis does not have are left out and told.
    static void collect(const std::vector<caseloads>& cases, const dofmap& d, double* f,
                        runlog& log);

  private:
    void nodalforces(const dofmap& d, double* f, absentloads& absent) const;
    void edgemoments(const shellrims& rims, const dofmap& d, double* f) const;
    static void addelementloads(const std::vector<caseloads>& cases, const dofmap& d, double* f,
                                std::vector<absentloads>& absent);
    void tellabsent(const absentloads& absent, runlog& log) const;
    void tellidle(runlog& log) const;
    bool rowsonelement(const element& e, unitloads& unit, elvector& f) const;
    void weighplate(const element& e, elvector& f) const;
    bool massonelement(const element& e, elvector& f) const;
    std::vector<elementrow>::const_iterator firstrow(int e) const;
    vec3 accelerationat(const vec3& at) const;

    const model& m;
    const settings& s;
    const loadcase& c;
    int number;
    bool accelerated;
    inertia masses;
    vec3 uniform, rotation, centre;  // accelerations times mass unit over force unit
    waveloads sea;
    std::vector<elementrow> rows;  // by element
};
