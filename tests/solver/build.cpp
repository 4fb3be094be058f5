// SPDX-License-Identifier: GPL-3.0-or-later
// Building of models for the solver's tests.
#include "tests/solver/build.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>

#include "core/textfile.h"
#include "solver/refuse.h"

namespace fs = std::filesystem;

build::build() {
    m.nodes.resize(1);
    m.elements.resize(1);
    m.groups.resize(1);
    m.cases.resize(2);
    m.cases[1].name = "LC 1";
    s.threads = 2;
    log.quiet();
}

int build::node(double x, double y, double z) {
    m.nodes.emplace_back(x, y, z);
    return m.nnodes();
}

int build::group(std::initializer_list<fieldvalue> fields) {
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

int build::element(int type, int g, std::initializer_list<int> nodes) {
    elementdef e;
    e.type = type;
    e.group = g;
    std::copy(nodes.begin(), nodes.end(), e.node);
    m.elements.push_back(e);
    return m.nelems();
}

void build::fix(int n, std::initializer_list<int> dofs, double value) {
    for (const int dof : dofs) m.constraints.push_back({n, dof, value});
}

void build::load(int lc, int n, int dof, double value) {
    m.cases[std::size_t(lc)].nodal.push_back({n, dof, value});
}

int build::addcase(int type, std::initializer_list<double> par) {
    loadcase c;
    c.type = type;
    c.name = "LC " + std::to_string(m.cases.size());
    std::copy(par.begin(), par.end(), c.par);
    m.cases.push_back(c);
    return m.ncases();
}

void build::press(int lc, int e, int direction, double value) {
    m.cases[std::size_t(lc)].element.push_back({e, direction, value});
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
            if (kindof(type).nodes == 4) {
                element(type, g, {a, b, c, d});
            } else {
                element(type, g, {a, b, c});
                element(type, g, {a, c, d});
            }
        }
    made.elements = m.nelems() + 1 - made.firstelement;
    return made;
}

results build::solve(int doftype, wanted what) {
    return solvemodel(m, s, doftype, what, log);
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

double imbalance(const results& r, int lc) {
    const vec6& load = r.reactions.load[std::size_t(lc)];
    const vec6& reaction = r.reactions.reaction[std::size_t(lc)];
    const double size = std::max(load.cwiseAbs().maxCoeff(), reaction.cwiseAbs().maxCoeff());
    return (load + reaction).cwiseAbs().maxCoeff() / (size > 0 ? size : 1);
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
    std::vector<std::string> tokens;
    std::string token;
    for (const char c : readwhole(path) + " ") {
        if (c != ',' && c != ' ' && c != '\r' && c != '\n') {
            token += c;
        } else if (!token.empty()) {
            tokens.push_back(token);
            token.clear();
        }
    }
    return tokens;
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
