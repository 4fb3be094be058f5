// SPDX-License-Identifier: GPL-3.0-or-later
// Builds models for the solver's tests, solves them, reads single results, writes their files.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "solver/kinds.h"
#include "solver/run.h"

struct build {
    model m;
    settings s;

    build();
    int node(double x, double y, double z = 0);
    // Fields by number: {{fieldmodulus, 210000}, ...}. Returns the group's number.
    struct fieldvalue {
        groupfield field;
        double value;
    };
    int group(std::initializer_list<fieldvalue> fields);
    int plate(double modulus, double poisson, double thickness, double density = 0);
    int element(int type, int g, std::initializer_list<int> nodes);
    void fix(int n, std::initializer_list<int> dofs, double value = 0);
    void load(int lc, int n, int dof, double value);
    int addcase(int type = caseapplied, std::initializer_list<double> par = {});
    void press(int lc, int e, int direction, double value);

    // Grid of nx x ny quadrilaterals (or twice as many triangles for a type of three nodes) on the
    // surface at(r, s), r and s of 0..1. Returns the node of grid point i, j by number(i, j).
    struct grid {
        int nx, ny, firstnode, firstelement, elements;
        int number(int i, int j) const { return firstnode + i + j * (nx + 1); }
    };
    grid mesh(int type, int g, int nx, int ny, const std::function<vec3(double, double)>& at);

    results solve(int doftype = 0, wanted what = {});
    std::string refusal(int doftype = 0, wanted what = {});  // "" where none came
    runlog log;

    void write(const std::string& path) const;  // the native file set
};

// Displacement or reaction of node n in direction dof 1..6 (0 where the analysis has none).
double moved(const results& r, int lc, int n, int dof);
double reacted(const results& r, int lc, int n, int dof);

// Largest part of a case's load, forces and moments, that its reactions do not balance.
double imbalance(const results& r, int lc);

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
