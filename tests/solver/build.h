// SPDX-License-Identifier: GPL-3.0-or-later
// Builds models for the solver's tests, solves them, reads single results, writes their files.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "solver/elements/kinds.h"
#include "solver/run.h"

const std::initializer_list<int> clamped = {1, 2, 3, 4, 5, 6};
const double right = 1.57079632679489662;  // angle

// On a cylinder about the z axis; angle in radians.
vec3 around(double radius, double angle, double z);

struct build {
    model m;
    settings s;

    build();
    void inmetres() { s.length = s.force = s.mass = 1; }  // newtons, kilograms
    int node(double x, double y, double z = 0) { return node(vec3(x, y, z)); }
    int node(const vec3& at);

    // Groups; each returns its number. Fields by number: {{fieldmodulus, 210000}, ...}.
    struct fieldvalue {
        groupfield field;
        double value;
    };
    int group(const std::vector<fieldvalue>& fields);
    int plate(double modulus, double poisson, double thickness, double density = 0);
    // Poisson's ratio 0.3; inertia: I xx, I yy, I zz.
    int bar(double modulus, double area, const vec3& inertia = vec3::Zero(), double density = 0);
    int spring(const mat6& stiffness);
    double& field(int g, groupfield f) { return m.groups[std::size_t(g)].field[f]; }

    int element(int type, int g, const std::vector<int>& nodes);
    void quad(int type, int g, const std::array<int, 4>& nodes);    // one, or two triangles
    int single(int type, int g, const std::vector<vec3>& corners);  // on nodes of its own
    // n line elements in a row on nodes of their own; returns the first node.
    int chain(int type, int g, const vec3& from, const vec3& to, int n);

    // Grid of nx x ny quadrilaterals (or twice as many triangles for a type of three nodes) on the
    // surface at(r, s), r and s of 0..1. Returns the node of grid point i, j by number(i, j).
    struct grid {
        int nx, ny, firstnode, firstelement, elements;
        int number(int i, int j) const { return firstnode + i + j * (nx + 1); }
        // Nodes along the edges r = 0, r = 1, s = 0, s = 1.
        std::vector<int> left() const { return edge(number(0, 0), nx + 1, ny); }
        std::vector<int> right() const { return edge(number(nx, 0), nx + 1, ny); }
        std::vector<int> bottom() const { return edge(number(0, 0), 1, nx); }
        std::vector<int> top() const { return edge(number(0, ny), 1, nx); }
        static std::vector<int> edge(int first, int step, int steps);
    };
    grid mesh(int type, int g, int nx, int ny, const std::function<vec3(double, double)>& at);

    void fix(int n, std::initializer_list<int> dofs, double value = 0);
    void fix(const std::vector<int>& nodes, std::initializer_list<int> dofs);
    void fixall(std::initializer_list<int> dofs = clamped);
    int addcase(int type = caseapplied, std::initializer_list<double> par = {});
    void onlycase(int type, std::initializer_list<double> par);  // in place of all others
    void load(int lc, int n, int dof, double value) { at(lc).nodal.push_back({n, dof, value}); }
    void load(int lc, int n, const vec6& forces);
    void spread(int lc, const std::vector<int>& edge, int dof, double total);  // evenly
    void press(int lc, int e, int direction, double value) {
        at(lc).element.push_back({e, direction, value});
    }
    void pressall(int lc, int direction, double value);
    loadcase& at(int lc) { return m.cases[std::size_t(lc)]; }

    results solve(int doftype = 0, wanted what = {});
    std::string refusal(int doftype = 0, wanted what = {});  // "" where none came
    runlog log;

    // Called after each solution, and after each refusal with its words.
    static std::function<void(build& b, int doftype, wanted what, const results& r)> solved;
    static std::function<void(build& b, int doftype, wanted what, const std::string& why)> refused;

    void write(const std::string& path) const;  // the native file set
};

// Displacement or reaction of node n in direction dof 1..6 (0 where the analysis has none).
double moved(const results& r, int lc, int n, int dof);
double reacted(const results& r, int lc, int n, int dof);
// Three of them: dof 1 translations, forces; dof 4 rotations, moments.
vec3 movedby(const results& r, int lc, int n, int dof = 1);
vec3 reactedby(const results& r, int lc, int n, int dof = 1);

linestress stressofline(const build& b, const results& r, std::size_t line, int lc);

// A fresh folder under the system's temporary one, removed with the object.
struct tempfolder {
    tempfolder();
    ~tempfolder();
    std::string path;
    std::string operator/(const std::string& name) const { return path + "/" + name; }
};

// All numbers and words of a result file, split at commas, blanks and line ends.
std::vector<std::string> tokensof(const std::string& path);

// Runs the program itself; returns its exit code, output receives both streams.
int runfeiflu(const std::string& arguments, std::string& output);
