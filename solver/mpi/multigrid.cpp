// SPDX-License-Identifier: GPL-3.0-or-later
// Calls of PETSc. Every owner of unknowns has as many rows as a node has degrees of freedom, so
// that nodes are aggregated whole; rows of what is held stand for themselves.
#include "solver/mpi/multigrid.h"

#include <petscksp.h>
#include <slepceps.h>

#include <Eigen/Geometry>

#include <algorithm>
#include <cmath>
#include <exception>
#include <functional>

#include "solver/base/memory.h"
#include "solver/equations/softness.h"
#include "solver/mpi/mumps.h"
#include "solver/processes/ranks.h"

static void check(PetscErrorCode code) {
    if (code != 0)
        refuse("The engine PETSc ended with its fault " + std::to_string(code) +
               ", maybe for lack of memory; use engine = mumps in feiflu.ini");
}

struct multigrid::inside {
    int block = 1;                // rows of an owner
    std::vector<PetscInt> row;    // of each unknown of this process' part
    std::vector<PetscInt> held;   // rows without an unknown, of the owners counted here
    std::vector<PetscInt> moved;  // the other rows of these owners
    std::vector<double> motions;  // rigid ones, six numbers a row of these
    PetscInt rows = 0;            // of all
    double unknowns = 0;          // of all
    double entries = 0, tolerance = 1e-13;
    Mat matrix = nullptr;
    KSP solver = nullptr;
    Vec x = nullptr, b = nullptr, part = nullptr;  // part: by unknown of this process
    VecScatter all = nullptr;
    sharingptr shared;

    std::unique_ptr<engine> small;  // in place of all this
    bool stagnated = false;         // that is why
    const model* of = nullptr;
    const dofmap* with = nullptr;
    const sparsematrix* equations = nullptr;

    // What a fault has left half made is not fit for being unmade.
    ~inside() {
        if (std::uncaught_exceptions() == 0) release();
    }
    void release() {
        KSPDestroy(&solver);
        VecScatterDestroy(&all);
        for (Vec* const v : {&x, &b, &part}) VecDestroy(v);
        MatDestroy(&matrix);
    }
    void placeowner(const model& m, const dofmap& d, int owner, int place, const vec3& origin);
    void hangmotions();
    Mat makematrix(const sparsematrix& a);
    void fill(Mat to, const sparsematrix& a, double onheld) const;
    void put(const double* values, Vec to);
    void take(Vec from, double* values);
    bool converges(Vec right, Vec to, double wanted);
    bool solved(Vec right, Vec to);
    void takefactor();
};

// --- numbering and rigid motions ----------------------------------------------------------------

// Displacements of a degree of freedom (code 1..6) at x by the motion 0..5: three translations,
// three rotations.
static double motionat(int motion, int code, const vec3& x) {
    if (motion < 3) return code == motion + 1 ? 1 : 0;
    if (code > 3) return code - 4 == motion - 3 ? 1 : 0;
    const vec3 axis = vec3::Unit(motion - 3);
    return axis.cross(x)[code - 1];
}

void multigrid::inside::placeowner(const model& m, const dofmap& d, int owner, int place,
                                   const vec3& origin) {
    const int first = d.firstunknown[std::size_t(place)];
    const int count = d.unknowncount[std::size_t(place)];
    const int space = d.spaceof[std::size_t(owner)];
    const vec3 x = m.nodes[std::size_t(owner)] - origin;
    const bool counted = d.nodes->counts(std::size_t(owner - 1));
    const int placeofall = d.nodes->alone() ? place : d.placeofall[std::size_t(place)];
    int local = 0;
    for (int k = 0; k < block; ++k) {
        const PetscInt at = PetscInt(placeofall) * block + k;
        const bool own = space >= 0 ? k < count : d.equation[d.index(owner, k)] >= 0;
        if (!own) {
            if (counted) held.push_back(at);
            continue;
        }
        row[std::size_t(first + local++)] = at;
        if (!counted) continue;
        moved.push_back(at);
        for (int motion = 0; motion < 6; ++motion) {
            double& value = motions.emplace_back(0);
            if (space < 0) value = motionat(motion, d.code[k], x);
            const int base = space < 0 ? 0 : d.spaces[std::size_t(space)].base;
            for (int j = 0; j < base; ++j)
                value += d.spaces[std::size_t(space)].z(j, k) * motionat(motion, d.code[j], x);
        }
    }
}

void multigrid::describe(const model& m, const dofmap& d) {
    inside& s = *in;
    s.of = &m;
    s.with = &d;
    const int few = 3000;  // unknowns, which no coarser grid would serve
    s.small = d.unknownsofall < few ? std::make_unique<mumps>("") : nullptr;
    if (s.small) return s.small->describe(m, d);
    s.block = d.pernode;
    s.unknowns = d.unknownsofall;
    s.rows = PetscInt(d.nodes->alone() ? int(d.firstunknown.size()) : d.ownersofall) * s.block;
    s.row.assign(std::size_t(d.unknowns), 0);
    for (std::vector<PetscInt>* const list : {&s.held, &s.moved}) list->clear();
    s.motions.clear();
    const vec3 origin = firstnode(m);  // near, to save digits
    for (int n = 1; n <= m.nnodes(); ++n)
        if (const int place = d.position[std::size_t(n)]; place >= 0)
            s.placeowner(m, d, n, place, origin);
}

void multigrid::inside::hangmotions() {
    std::vector<Vec> vectors;
    for (std::size_t motion = 0; motion < 6; ++motion) {
        std::vector<double> from(moved.size());
        for (std::size_t i = 0; i < from.size(); ++i) from[i] = motions[6 * i + motion];
        Vec v = nullptr;
        check(VecDuplicate(x, &v));
        check(VecSet(v, 0));
        check(VecSetValues(v, PetscInt(moved.size()), moved.data(), from.data(), INSERT_VALUES));
        check(VecAssemblyBegin(v));
        check(VecAssemblyEnd(v));
        for (Vec other : vectors) {
            PetscScalar share = 0;
            check(VecDot(v, other, &share));
            check(VecAXPY(v, -share, other));
        }
        PetscReal length = 0;
        check(VecNormalize(v, &length));
        if (length > 0)
            vectors.push_back(v);
        else
            check(VecDestroy(&v));
    }
    MatNullSpace space = nullptr;
    check(MatNullSpaceCreate(PETSC_COMM_WORLD, PETSC_FALSE, PetscInt(vectors.size()),
                             vectors.data(), &space));
    check(MatSetNearNullSpace(matrix, space));
    check(MatNullSpaceDestroy(&space));
    for (Vec& v : vectors) check(VecDestroy(&v));
}

// --- engine -------------------------------------------------------------------------------------

multigrid::multigrid() : in(new inside) {
    PetscBool begun = PETSC_FALSE;
    PetscInitialized(&begun);
    if (begun == PETSC_TRUE) return;
    check(SlepcInitializeNoArguments());
    check(PetscPopSignalHandler());  // the program has its own
    check(PetscPushErrorHandler(PetscReturnErrorHandler, nullptr));
}

multigrid::~multigrid() = default;

// Both triangles of what is handed in, and the diagonal of what is held.
Mat multigrid::inside::makematrix(const sparsematrix& a) {
    std::vector<PetscInt> rowlist, columns;
    const std::size_t count = 2 * a.row.size() - std::size_t(a.size()) + held.size();
    rowlist.reserve(count);
    columns.reserve(count);
    for (std::int64_t j = 0; j < a.size(); ++j)
        for (auto i = std::size_t(a.start[std::size_t(j)]);
             i < std::size_t(a.start[std::size_t(j) + 1]); ++i) {
            const PetscInt r = row[std::size_t(a.row[i])], c = row[std::size_t(j)];
            rowlist.push_back(r), columns.push_back(c);
            if (r != c) rowlist.push_back(c), columns.push_back(r);
        }
    for (const PetscInt r : held) rowlist.push_back(r), columns.push_back(r);
    entries = double(rowlist.size());
    const PetscInt owners = rows / block, size = allranks().count(), me = allranks().me();
    const PetscInt mine = (owners * (me + 1) / size - owners * me / size) * block;
    Mat made = nullptr;
    check(MatCreate(PETSC_COMM_WORLD, &made));
    check(MatSetSizes(made, mine, mine, rows, rows));
    check(MatSetType(made, MATAIJ));
    check(MatSetBlockSize(made, block));
    check(MatSetPreallocationCOO(made, PetscCount(rowlist.size()), rowlist.data(), columns.data()));
    return made;
}

void multigrid::inside::fill(Mat to, const sparsematrix& a, double onheld) const {
    std::vector<PetscScalar> values;
    for (std::int64_t j = 0; j < a.size(); ++j)
        for (auto i = std::size_t(a.start[std::size_t(j)]);
             i < std::size_t(a.start[std::size_t(j) + 1]); ++i) {
            values.push_back(a.value[i]);
            if (a.row[i] != j) values.push_back(a.value[i]);
        }
    values.insert(values.end(), held.size(), onheld);
    check(MatSetValuesCOO(to, values.data(), INSERT_VALUES));
}

void multigrid::analyse(const sparsematrix& a) {
    inside& s = *in;
    s.release();
    if (s.small) return s.small->analyse(a);
    s.matrix = s.makematrix(a);
    check(MatSetOption(s.matrix, MAT_SPD, PETSC_TRUE));
    check(MatCreateVecs(s.matrix, &s.x, &s.b));
    s.shared = a.unknowns;
    IS here = nullptr;
    const auto held = PetscInt(s.row.size());
    check(ISCreateGeneral(PETSC_COMM_SELF, held, s.row.data(), PETSC_USE_POINTER, &here));
    check(VecCreateSeq(PETSC_COMM_SELF, held, &s.part));
    check(VecScatterCreate(s.x, here, s.part, nullptr, &s.all));
    check(ISDestroy(&here));
    s.hangmotions();
}

double multigrid::entries() const {
    if (in->small) return in->small->entries();
    return in->entries;
}

double multigrid::operations() const {
    if (in->small) return in->small->operations();
    return 2 * in->entries;  // of one step
}

double multigrid::bytes() const {
    if (in->small) return in->small->bytes();
    const double anentry = 60;  // with the coarser grids
    return anentry * in->entries;
}

bool multigrid::factorise(const sparsematrix& a) {
    inside& s = *in;
    s.equations = &a;
    if (s.small) return s.small->factorise(a);
    const std::vector<double> diagonal = diagonalof(a);
    double soft = std::any_of(diagonal.begin(), diagonal.end(), [](double v) { return !(v > 0); });
    allranks().most(&soft, 1);
    if (soft != 0) return false;
    const std::vector<double> ones(diagonal.size(), 1);
    const double sum = dotproduct(*a.unknowns, diagonal.data(), ones.data(), ones.size());
    const double typical = sum / s.unknowns;
    s.fill(s.matrix, a, typical);
    PC preconditioner = nullptr;
    check(KSPDestroy(&s.solver));
    check(KSPCreate(PETSC_COMM_WORLD, &s.solver));
    check(KSPSetOperators(s.solver, s.matrix, s.matrix));
    check(KSPSetType(s.solver, KSPCG));
    check(KSPSetNormType(s.solver, KSP_NORM_UNPRECONDITIONED));
    check(KSPGetPC(s.solver, &preconditioner));
    check(PCSetType(preconditioner, PCGAMG));
    check(PCGAMGSetNSmooths(preconditioner, 1));
    check(KSPSetUp(s.solver));
    return true;
}

// By unknown of this process, by row.
void multigrid::inside::put(const double* values, Vec to) {
    PetscScalar* array = nullptr;
    check(VecSet(to, 0));
    check(VecGetArrayWrite(part, &array));
    std::copy_n(values, row.size(), array);
    check(VecRestoreArrayWrite(part, &array));
    check(VecScatterBegin(all, part, to, INSERT_VALUES, SCATTER_REVERSE));
    check(VecScatterEnd(all, part, to, INSERT_VALUES, SCATTER_REVERSE));
}

void multigrid::inside::take(Vec from, double* values) {
    check(VecScatterBegin(all, from, part, INSERT_VALUES, SCATTER_FORWARD));
    check(VecScatterEnd(all, from, part, INSERT_VALUES, SCATTER_FORWARD));
    const PetscScalar* array = nullptr;
    check(VecGetArrayRead(part, &array));
    std::copy_n(array, row.size(), values);
    check(VecRestoreArrayRead(part, &array));
}

// False where it stagnates before the residual is the wanted part of the right side.
bool multigrid::inside::converges(Vec right, Vec to, double wanted) {
    const int most = 3000;  // steps
    check(KSPSetTolerances(solver, wanted, 0, PETSC_DEFAULT, most));
    check(KSPSolve(solver, right, to));
    KSPConvergedReason reason = KSP_CONVERGED_ITERATING;
    check(KSPGetConvergedReason(solver, &reason));
    return reason > 0;
}

bool multigrid::inside::solved(Vec right, Vec to) {
    const double enough = 1e-10;
    return converges(right, to, tolerance) || converges(right, to, std::max(enough, tolerance));
}

double multigrid::smallestpivot(const sparsematrix& a, std::int64_t& unknown) {
    if (in->small) return in->small->smallestpivot(a, unknown);
    const double rough = 1e-4, rounding = 1e-12, fine = in->tolerance;
    in->tolerance = rough;
    double soft = 0;
    guarded([&] { soft = softness(*this, a, unknown); }, [](const runtimeerror&) {});
    in->tolerance = fine;
    return soft < rounding ? soft : 1;
}

static const char stagnates[] =
    "The multigrid stagnates: after 3000 steps the forces are not in balance. The model is thin, "
    "slender or nearly a mechanism";

// Where the memory allows it a factor takes the place of grids that stagnate.
void multigrid::inside::takefactor() {
    release();
    stagnated = true;
    small = std::make_unique<mumps>("");
    small->describe(*of, *with);
    small->analyse(*equations);
    const double part = 0.9;  // of the memory; the rest is for results
    double toolarge = small->bytes() > part * freememory() / allranks().here();
    allranks().most(&toolarge, 1);
    if (toolarge != 0 || !small->factorise(*equations))
        refuse(std::string(stagnates) +
               "; use engine = mumps in feiflu.ini, with a scratch folder where the memory is "
               "short");
}

std::string multigrid::remark() const {
    return in->stagnated ? std::string(stagnates) + ": MUMPS factorised it" : "";
}

void multigrid::solve(double* x, int columns, triangles) {
    if (in->small) return in->small->solve(x, columns);
    inside& s = *in;
    const auto n = std::int64_t(s.row.size());
    const double enough = 1e-10;
    for (int c = 0; c < columns; ++c) {
        double* const f = x + c * n;
        if (dotproduct(*s.shared, f, f, std::size_t(n)) == 0) continue;
        s.put(f, s.b);
        if (!s.solved(s.b, s.x)) {
            if (s.tolerance > enough) refuse(stagnates);
            s.takefactor();
            return s.small->solve(f, columns - c);
        }
        s.take(s.x, f);
    }
}

// --- modes --------------------------------------------------------------------------------------

namespace {
// What SLEPc asks for while it searches. A fault must pass through its frames as a number.
struct inverse {
    std::function<bool(Vec right, Vec to)> solve;
    steplog& log;
    std::string fault;
    bool stagnates = false;

    static PetscErrorCode apply(PC shell, Vec right, Vec to) {
        void* context = nullptr;
        if (const PetscErrorCode code = PCShellGetContext(shell, &context)) return code;
        auto& one = *static_cast<inverse*>(context);
        one.log.step();
        guarded([&] { one.stagnates = !one.solve(right, to); },
                [&](const runtimeerror& e) { one.fault = e.what; });
        return one.stagnates || !one.fault.empty() ? PETSC_ERR_NOT_CONVERGED : PetscErrorCode(0);
    }
};
}  // namespace

bool multigrid::searches() const {
    return !in->small;
}

// A^-1 M by the method of Krylov and Schur, where lengths are measured by A.
eigenpairs multigrid::search(const sparsematrix& mass, const Eigen::MatrixXd& found,
                             const searchwish& wish, steplog& log) {
    inside& s = *in;
    Mat m = s.makematrix(mass);
    s.fill(m, mass, 0);
    std::vector<Vec> beside(std::size_t(found.cols()));
    for (std::size_t i = 0; i < beside.size(); ++i) {
        check(VecDuplicate(s.x, &beside[i]));
        s.put(found.col(Eigen::Index(i)).data(), beside[i]);
    }
    inverse shell{[&s](Vec right, Vec to) { return s.solved(right, to); }, log, {}};
    const int rounds = 300;
    EPS solver = nullptr;
    ST transformation = nullptr;
    KSP direct = nullptr;
    PC inner = nullptr;
    check(EPSCreate(PETSC_COMM_WORLD, &solver));
    check(EPSSetOperators(solver, m, s.matrix));
    check(EPSSetProblemType(solver, EPS_GHEP));
    check(EPSSetWhichEigenpairs(solver, EPS_LARGEST_REAL));
    check(EPSSetDimensions(solver, wish.wanted, wish.basis, PETSC_DEFAULT));
    check(EPSSetTolerances(solver, wish.tolerance, rounds));
    check(EPSSetDeflationSpace(solver, PetscInt(beside.size()), beside.data()));
    check(EPSGetST(solver, &transformation));
    check(STGetKSP(transformation, &direct));
    check(KSPSetType(direct, KSPPREONLY));
    check(KSPGetPC(direct, &inner));
    check(PCSetType(inner, PCSHELL));
    check(PCShellSetContext(inner, &shell));
    check(PCShellSetApply(inner, inverse::apply));
    const PetscErrorCode ended = EPSSolve(solver);
    if (!shell.fault.empty()) refuse(shell.fault);
    if (shell.stagnates) {
        s.takefactor();
        return {};
    }
    check(ended);
    PetscInt count = 0;
    check(EPSGetConverged(solver, &count));
    count = std::min<PetscInt>(count, wish.wanted);
    eigenpairs r{Eigen::VectorXd(count), Eigen::MatrixXd(Eigen::Index(s.row.size()), count)};
    for (PetscInt i = 0; i < count; ++i) {
        check(EPSGetEigenpair(solver, i, &r.value[i], nullptr, s.x, nullptr));
        s.take(s.x, r.vectors.col(i).data());
    }
    check(EPSDestroy(&solver));
    for (Vec& v : beside) check(VecDestroy(&v));
    check(MatDestroy(&m));
    return r;
}
