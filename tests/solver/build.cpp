// SPDX-License-Identifier: GPL-3.0-or-later
// Building of models for the solver's tests.
#include "tests/solver/build.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <sstream>

#include "core/textfile.h"
#include "solver/base/refuse.h"

namespace fs = std::filesystem;

vec3 around(double radius, double angle, double z) {
    return {radius * std::cos(angle), radius * std::sin(angle), z};
}

build::build() {
    m.nodes.resize(1);
    m.elements.resize(1);
    m.groups.resize(1);
    m.cases.resize(2);
    m.cases[1].name = "LC 1";
    s.threads = 2;
    log.quiet();
}

int build::node(const vec3& at) {
    m.nodes.push_back(at);
    return m.nnodes();
}

// --- groups and elements ------------------------------------------------------------------------

int build::group(const std::vector<fieldvalue>& fields) {
    groupdata g;
    g.name = "GR " + std::to_string(m.groups.size());
    for (const fieldvalue& f : fields) g.field[f.field] = f.value;
    m.groups.push_back(g);
    return m.ngroups();
}

int build::plate(double modulus, double poisson, double thickness, double density) {
    return group({{fieldmodulus, modulus},
                  {fieldpoisson, poisson},
                  {fieldthickness, thickness},
                  {fielddensity, density}});
}

int build::bar(double modulus, double area, const vec3& inertia, double density) {
    const int g = plate(modulus, 0.3, area, density);
    field(g, fieldixx) = inertia[0], field(g, fieldiyy) = inertia[1];
    field(g, fieldizz) = inertia[2];
    return g;
}

int build::spring(const mat6& stiffness) {
    const int g = group({});
    m.groups[std::size_t(g)].spring = stiffness;
    return g;
}

int build::element(int type, int g, const std::vector<int>& nodes) {
    elementdef e;
    e.type = type;
    e.group = g;
    std::copy(nodes.begin(), nodes.end(), e.node);
    m.elements.push_back(e);
    return m.nelems();
}

int build::single(int type, int g, const std::vector<vec3>& corners) {
    std::vector<int> nodes;
    for (const vec3& at : corners) nodes.push_back(node(at));
    return element(type, g, nodes);
}

int build::chain(int type, int g, const vec3& from, const vec3& to, int n) {
    const int first = node(from);
    for (int i = 1; i <= n; ++i) {
        const int last = node(from + (to - from) * i / n);
        element(type, g, {last - 1, last});
    }
    return first;
}

void build::quad(int type, int g, const std::array<int, 4>& n) {
    if (kindof(type).nodes == 4) {
        element(type, g, {n[0], n[1], n[2], n[3]});
    } else {
        element(type, g, {n[0], n[1], n[2]});
        element(type, g, {n[0], n[2], n[3]});
    }
}

build::grid build::mesh(int type, int g, int nx, int ny,
                        const std::function<vec3(double, double)>& at) {
    grid made{nx, ny, m.nnodes() + 1, m.nelems() + 1, 0};
    for (int j = 0; j <= ny; ++j)
        for (int i = 0; i <= nx; ++i) m.nodes.push_back(at(double(i) / nx, double(j) / ny));
    for (int j = 0; j < ny; ++j)
        for (int i = 0; i < nx; ++i) {
            const int a = made.number(i, j), b = made.number(i + 1, j);
            const int c = made.number(i + 1, j + 1), d = made.number(i, j + 1);
            quad(type, g, {a, b, c, d});
        }
    made.elements = m.nelems() + 1 - made.firstelement;
    return made;
}

std::vector<int> build::grid::edge(int first, int step, int steps) {
    std::vector<int> nodes;
    for (int i = 0; i <= steps; ++i) nodes.push_back(first + i * step);
    return nodes;
}

// --- supports and loads -------------------------------------------------------------------------

void build::fix(int n, std::initializer_list<int> dofs, double value) {
    for (const int dof : dofs) m.constraints.push_back({n, dof, value});
}

void build::fix(const std::vector<int>& nodes, std::initializer_list<int> dofs) {
    for (const int n : nodes) fix(n, dofs);
}

void build::fixall(std::initializer_list<int> dofs) {
    for (int n = 1; n <= m.nnodes(); ++n) fix(n, dofs);
}

int build::addcase(int type, std::initializer_list<double> par) {
    loadcase c;
    c.type = type;
    c.name = "LC " + std::to_string(m.cases.size());
    std::copy(par.begin(), par.end(), c.par);
    m.cases.push_back(c);
    return m.ncases();
}

void build::onlycase(int type, std::initializer_list<double> par) {
    m.cases.resize(1);
    addcase(type, par);
}

void build::load(int lc, int n, const vec6& forces) {
    for (int k = 0; k < 6; ++k) load(lc, n, k + 1, forces[k]);
}

void build::spread(int lc, const std::vector<int>& edge, int dof, double total) {
    const std::size_t n = edge.size() - 1;
    for (std::size_t i = 0; i <= n; ++i)
        load(lc, edge[i], dof, total / double(n) * (i == 0 || i == n ? 0.5 : 1));
}

void build::pressall(int lc, int direction, double value) {
    for (int e = 1; e <= m.nelems(); ++e) press(lc, e, direction, value);
}

// --- results ------------------------------------------------------------------------------------

std::function<void(build&, int, wanted, const results&)> build::solved;
std::function<void(build&, int, wanted, const std::string&)> build::refused;

results build::solve(int doftype, wanted what) {
    results r;
    guarded([&] { r = solvemodel(m, s, doftype, what, log); },
            [&](const runtimeerror& e) {
                if (refused) refused(*this, doftype, what, e.what);
                throw e;
            });
    if (solved) solved(*this, doftype, what, r);
    return r;
}

std::string build::refusal(int doftype, wanted what) {
    std::string why;
    guarded([&] { solve(doftype, what); }, [&](const runtimeerror& e) { why = e.what; });
    return why;
}

void build::write(const std::string& path) const {
    const double pi = 3.14159265358979;
    textout tek(path + ".tek"), rot(path + ".rot"), vpl(path + ".vpl"), knk(path + ".knk");
    textout mlt(path + ".mlt"), lcd(path + ".lcd"), ell(path + ".ell");
    tek.line(m.nnodes(), m.nelems());
    for (int n = 1; n <= m.nnodes(); ++n) {
        const vec3& at = m.nodes[std::size_t(n)];
        tek.line(at.x(), at.y(), at.z());
    }
    for (int e = 1; e <= m.nelems(); ++e) {
        const elementdef& def = m.elements[std::size_t(e)];
        tek.line(def.type);
        for (int k = 0; k < kindof(def.type).nodes; ++k) tek.put(def.node[k]).comma();
        tek.line(def.group);
        rot.line(def.turn);
    }
    vpl.line(int(m.constraints.size()));
    for (const nodalrow& row : m.constraints)
        vpl.line(row.node, row.dof, row.dof == 3 ? row.value * pi / 180 : row.value);
    mlt.line(m.ngroups());
    for (int g = 1; g <= m.ngroups(); ++g) {
        mlt.quoted(m.groups[std::size_t(g)].name).endline();
        for (int k = 1; k <= groupfields; ++k) mlt.line(m.groups[std::size_t(g)].field[k]);
    }
    for (int g = 1; g <= m.ngroups(); ++g) {
        const mat6& k = m.groups[std::size_t(g)].spring;
        for (int i = 0; i < 6; ++i) mlt.line(k(i, 0), k(i, 1), k(i, 2), k(i, 3), k(i, 4), k(i, 5));
    }
    lcd.line(m.ncases());
    for (int lc = 1; lc <= m.ncases(); ++lc) {
        const loadcase& c = m.cases[std::size_t(lc)];
        lcd.quoted(c.name).endline();
        lcd.line(c.type);
        for (const double value : c.par) lcd.line(value);
        knk.line(int(c.nodal.size()));
        for (const nodalrow& row : c.nodal) knk.line(row.node, row.dof, row.value);
        ell.line(int(c.element.size()));
        for (const elementrow& row : c.element) ell.line(row.element, row.direction, row.value);
    }
    for (textout* out : {&tek, &rot, &vpl, &knk, &mlt, &lcd, &ell}) out->commit();
}

static double valueat(const results& r, const std::vector<double>& values, int lc, int n, int dof) {
    const int k = r.dofs.place[dof];
    return k < 0 ? 0 : values[std::size_t(lc - 1) * r.dofs.equation.size() + r.dofs.index(n, k)];
}

double moved(const results& r, int lc, int n, int dof) {
    return valueat(r, r.u.u, lc, n, dof);
}

double reacted(const results& r, int lc, int n, int dof) {
    return valueat(r, r.reactions.force, lc, n, dof);
}

linestress stressofline(const build& b, const results& r, std::size_t line, int lc) {
    return linestressof(elementat(b.m, b.s, r.lines.elements[line]), r.lines.of(lc, line));
}

vec3 movedby(const results& r, int lc, int n, int dof) {
    return {moved(r, lc, n, dof), moved(r, lc, n, dof + 1), moved(r, lc, n, dof + 2)};
}

vec3 reactedby(const results& r, int lc, int n, int dof) {
    return {reacted(r, lc, n, dof), reacted(r, lc, n, dof + 1), reacted(r, lc, n, dof + 2)};
}

tempfolder::tempfolder() {
    path = (fs::temp_directory_path() / "feiflu-test-XXXXXX").string();
    if (!mkdtemp(path.data())) throw runtimeerror{errpathaccess, "no temporary folder"};
}

tempfolder::~tempfolder() {
    std::error_code ec;
    fs::remove_all(path, ec);
}

std::vector<std::string> tokensof(const std::string& path) {
    std::string text = readwhole(path);
    std::replace(text.begin(), text.end(), ',', ' ');
    std::istringstream in(text);
    return {std::istream_iterator<std::string>(in), {}};
}

int runfeiflu(const std::string& arguments, std::string& output) {
    const fs::path self = fs::read_symlink("/proc/self/exe");
    const std::string command =
        (self.parent_path() / "feiflu").string() + " " + arguments + " 2>&1";
    std::FILE* const pipe = popen(command.c_str(), "r");
    output.clear();
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) output += char(c);
    const int status = pclose(pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
