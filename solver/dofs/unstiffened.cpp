// SPDX-License-Identifier: GPL-3.0-or-later
// Holding of what no element stiffens.
//
// The stiffness of an owner alone (all else fixed) shows it: where a direction gives no force
// there, it gives none anywhere, because the stiffness of each element has no negative energy. Each
// element is counted with its own size taken out, so that a soft spring beside a stiff bar still
// counts.
#include "solver/dofs/unstiffened.h"

#include <Eigen/Eigenvalues>
#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>
#include <limits>

#include "solver/dofs/faraway.h"
#include "solver/dofs/flattened.h"
#include "solver/dofs/rigid.h"
#include "solver/elements/kinds.h"
#include "solver/processes/ranks.h"

namespace {
struct ownerblock {
    int owner;
    double length = 1;  // of its body: a turn of an element compares with a way by it
    mat6 stiffness = mat6::Zero();
    mat6 motion = mat6::Zero();  // how much the nodes of elements move, in the same sizes
    mat6 mass = mat6::Zero();    // what is moved
};
}  // namespace

// --- owners whose freedom may lack stiffness ----------------------------------------------------

static std::vector<char> surelystiff(const model& m, const dofmap& d) {
    std::vector<char> sure(d.owner.size(), 0);
    const bool hasrotations = d.place[6] >= 0;
    for (int e = 1; e <= m.nelems(); ++e) {
        const elementdef& def = m.elements[std::size_t(e)];
        const elementkind& kind = kindof(def.type);
        const stiffened what = m.twod ? kind.nodes2 : kind.nodes3;
        for (int i = 0; i < kind.nodes; ++i) {
            const int n = def.node[i];
            const bool inbody = d.bodyof[std::size_t(n)] >= 0;
            const bool enough = what == stiffened::all ||
                                (what == stiffened::translations && !hasrotations && !inbody);
            if (enough) sure[std::size_t(d.owner[std::size_t(n)])] = 1;
        }
    }
    return sure;
}

// All directions in which a spring has any stiffness count alike: they have nothing to do with each
// other.
static void equalisestiffness(elmatrix& k) {
    const Eigen::SelfAdjointEigenSolver<elmatrix> spectrum(k);
    const double rounding = 1e-13;
    k.setZero();
    for (int i = 0; i < k.cols(); ++i)
        if (std::fabs(spectrum.eigenvalues()[i]) > rounding)
            k += spectrum.eigenvectors().col(i) * spectrum.eigenvectors().col(i).transpose();
}

// Element matrix with unit largest diagonal among translations and among rotations.
static void scaletounit(const elementkind& kind, elmatrix& k) {
    const int count = int(k.rows());
    elvector size = elvector::Zero(count);
    for (int i = 0; i < count; ++i)
        for (int j = 0; j < count; ++j) {
            const bool alike = (i % kind.nodedofs < 3) == (j % kind.nodedofs < 3);
            if (alike) size[i] = std::max(size[i], k(j, j));
        }
    for (int i = 0; i < count; ++i)
        for (int j = 0; j < count; ++j) {
            const double by = std::sqrt(size[i] * size[j]);
            k(i, j) = by > 0 ? k(i, j) / by : 0;
        }
    if (kind.fam == family::point || kind.fam == family::link) equalisestiffness(k);
}

namespace {
// The degrees of freedom of an element by the unknowns of their owners.
struct ownerrows {
    vec6 row[mostdofs];
    int block[mostdofs];  // -1: of none
};
}  // namespace

static ownerrows rowsof(const model& m, const dofmap& d, const element& e,
                        const std::vector<int>& blockof) {
    const int stride = kindof(e.type).nodedofs;
    ownerrows rows;
    for (int i = 0; i < e.nodes; ++i)
        for (int c = 0; c < stride; ++c) {
            const int a = i * stride + c, place = d.place[c + 1];
            rows.block[a] = place < 0 ? -1 : blockof[std::size_t(d.owner[std::size_t(e.node[i])])];
            if (rows.block[a] < 0) continue;
            const combination r = rowof(m, d, e.node[i], place);
            rows.row[a] = vec6::Zero();
            std::copy_n(r.factor, r.count, rows.row[a].data());
        }
    return rows;
}

static void addstiffness(const element& e, ownerrows rows, std::vector<ownerblock>& blocks) {
    const elementkind& kind = kindof(e.type);
    elmatrix k;
    kind.stiffness(e, k);
    scaletounit(kind, k);
    vec6* const row = rows.row;
    const int* const block = rows.block;
    for (int a = 0; a < k.rows(); ++a)
        if (block[a] >= 0 && a % kind.nodedofs >= 3) row[a] *= blocks[std::size_t(block[a])].length;
    for (int a = 0; a < k.rows(); ++a) {
        if (block[a] < 0) continue;
        ownerblock& own = blocks[std::size_t(block[a])];
        const int first = a % kind.nodedofs < 3 ? 0 : 3;  // of its kind, some have stiffness
        const auto same = k.diagonal().segment(a - a % kind.nodedofs + first, 3);
        if (same.maxCoeff() > 0) own.motion += row[a] * row[a].transpose();
        for (int b = 0; b < k.cols(); ++b)
            if (block[a] == block[b]) own.stiffness += k(a, b) * row[a] * row[b].transpose();
    }
}

static void addmass(const element& e, const ownerrows& rows, std::vector<ownerblock>& blocks) {
    elmatrix mass;
    kindof(e.type).mass(e, mass);
    const vec6* const row = rows.row;
    const int* const block = rows.block;
    for (int a = 0; a < mass.rows(); ++a)
        for (int b = 0; b < mass.cols(); ++b)
            if (block[a] >= 0 && block[a] == block[b])
                blocks[std::size_t(block[a])].mass += mass(a, b) * row[a] * row[b].transpose();
}

static void addnodalmasses(const model& m, const dofmap& d, const std::vector<int>& blockof,
                           std::vector<ownerblock>& blocks) {
    const int lc = masscase(m);
    if (lc == 0) return;
    for (const nodalrow& given : m.cases[std::size_t(lc)].nodal) {
        const int place = d.place[given.dof],
                  block = blockof[std::size_t(d.owner[std::size_t(given.node)])];
        if (place < 0 || block < 0) continue;
        const combination r = rowof(m, d, given.node, place);
        const vec6 row(r.factor);
        blocks[std::size_t(block)].mass += given.value * row * row.transpose();
    }
}

static std::vector<ownerblock> blocksof(const model& m, const settings& s, masses moved,
                                        const dofmap& d) {
    const std::vector<char> sure = surelystiff(m, d);
    std::vector<ownerblock> blocks;
    std::vector<int> blockof(d.owner.size(), -1);
    for (std::size_t n = 1; n < d.owner.size(); ++n)
        if (d.owner[n] == int(n) && !sure[n] && unknownsof(d, int(n)) > 0) {
            blockof[n] = int(blocks.size());
            const int body = d.bodyof[n];
            blocks.push_back({int(n), body < 0 ? 1 : bodylength(m, d.bodies[std::size_t(body)])});
        }
    if (moved != masses::none) addnodalmasses(m, d, blockof, blocks);
    if (blocks.empty()) return blocks;
    for (int number = 1; number <= m.nelems(); ++number) {
        const elementdef& def = m.elements[std::size_t(number)];
        const elementkind& kind = kindof(def.type);
        const bool hasmass = kind.mass != nullptr && moved != masses::none &&
                             (moved == masses::all || kind.fam == family::point);
        bool touches = false;
        for (int i = 0; i < kind.nodes; ++i)
            touches |= blockof[std::size_t(d.owner[std::size_t(def.node[i])])] >= 0;
        if (!touches) continue;
        const element e = elementat(m, s, number);
        const ownerrows rows = rowsof(m, d, e, blockof);
        if (kind.stiffness != nullptr) addstiffness(e, rows, blocks);
        if (hasmass) addmass(e, rows, blocks);
    }
    return blocks;
}

// --- the directions themselves ------------------------------------------------------------------

// Directions without stiffness (of an element's own) among the unknowns: unit vectors first, then
// the rest. A plane that only leans less than its noise has none of them: along an axis, what it
// moves across itself would be lost by as much as it leans.
static int emptydirections(const mat6& stiffness, int count, double nostiffness, mat6& empty,
                           bool& unitsalone) {
    const double parallel = 1e-6;
    int found = 0;
    std::vector<int> kept;
    for (int i = 0; i < count; ++i) {
        if (stiffness(i, i) > std::min(nostiffness, parallel * parallel))
            kept.push_back(i);
        else
            empty.col(found++) = vec6::Unit(i);
    }
    unitsalone = true;
    if (kept.empty()) return found;
    const int n = int(kept.size());
    Eigen::MatrixXd rest(n, n);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j)
            rest(i, j) = stiffness(kept[std::size_t(i)], kept[std::size_t(j)]);
    const Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> solver(rest);
    for (int v = 0; v < n; ++v) {
        if (solver.eigenvalues()[v] > nostiffness) continue;
        unitsalone = false;
        vec6 direction = vec6::Zero();
        for (int i = 0; i < n; ++i) direction[kept[std::size_t(i)]] = solver.eigenvectors()(i, v);
        empty.col(found++) = direction;
    }
    return found;
}

// Those of a body: motions whose energy is next to nothing beside that of the same motion of its
// nodes, and motions that leave them where they are but for the rounding of their places, which is
// told as a part of the body's length. A small turn of a body with a long arm is no noise, a turn
// out of a plane that is flat to an angle is.
static int emptymotions(const mat6& stiffness, const mat6& motion, int count, double angle,
                        double rounding, mat6& empty) {
    const double much = motion.topLeftCorner(count, count).trace() / count;
    const double still = much * std::clamp(std::pow(rounding / angle, 2), 1e-6, 1.0);
    if (!(still > 0)) {
        empty.setIdentity();
        return count;
    }
    const Eigen::MatrixXd force = stiffness.topLeftCorner(count, count),
                          size = motion.topLeftCorner(count, count) +
                                 still * Eigen::MatrixXd::Identity(count, count);
    const Eigen::GeneralizedSelfAdjointEigenSolver<Eigen::MatrixXd> solver(force, size);
    int found = 0;
    while (found < count && !(solver.eigenvalues()[found] > angle * angle)) ++found;
    if (found == 0) return 0;
    const Eigen::MatrixXd motions = solver.eigenvectors().leftCols(found).colwise().normalized();
    empty.topLeftCorner(count, found) =
        Eigen::HouseholderQR<Eigen::MatrixXd>(motions).householderQ() *
        Eigen::MatrixXd::Identity(count, found);
    return found;
}

// Of directions without stiffness that their mass ties to those with some, what has no mass: to
// hold the others would hold back some of what is stiff. All of them where nothing is tied. The
// directions are at right angles.
static int masslessof(const mat6& mass, int count, mat6& empty, int found) {
    if (mass.isZero(0)) return found;
    const int stiff = count - found;
    const Eigen::MatrixXd all = mass.topLeftCorner(count, count),
                          free = empty.topLeftCorner(count, found),
                          other = complementof(empty, found, count).topLeftCorner(count, stiff),
                          own = free.transpose() * all * free;
    const double rounding = 1e-9;
    bool tied = false;
    for (int i = 0; i < found; ++i)
        for (int j = 0; j < stiff; ++j) {
            const double tie = other.col(j).dot(all * free.col(i)),
                         size = own(i, i) * other.col(j).dot(all * other.col(j));
            tied |= tie * tie > rounding * size;
        }
    if (!tied) return found;
    const Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> solver(own);
    int massless = 0;
    while (massless < found && !(solver.eigenvalues()[massless] > rounding * own.trace()))
        ++massless;
    empty.topLeftCorner(count, massless) = free * solver.eigenvectors().leftCols(massless);
    return massless;
}

static void holdplain(dofmap& d, int n, const mat6& empty, int found) {
    std::size_t unknown[6];
    int count = 0;
    for (int k = 0; k < d.pernode; ++k) {
        const std::size_t i = d.index(n, k);
        if (!d.prescribed[i] && !d.heldplain[i]) unknown[count++] = i;
    }
    for (int v = 0; v < found; ++v) {
        int at = 0;
        empty.col(v).maxCoeff(&at);
        d.heldplain[unknown[at]] = 1;
    }
}

// by: unknown = by * comparable unknown, in which empty is told.
static void holdinspace(const model& m, dofmap& d, int owner, const mat6& empty, int found,
                        const vec6& by) {
    int& place = d.spaceof[std::size_t(owner)];
    if (place < 0) {
        const ownerspace space = plainspace(m, d, owner);
        place = int(d.spaces.size());
        d.spaces.push_back(space);
    }
    ownerspace& space = d.spaces[std::size_t(place)];
    const mat6 z = space.z * by.asDiagonal();
    for (int v = 0; v < found; ++v)
        d.held.push_back({owner, (z * vec6(empty.col(v))).normalized()});
    space.z = z * complementof(empty, found, space.count);
    space.count -= found;
    space.z.rightCols(6 - space.count).setZero();
}

// Rotations of a body compare with its translations by its length.
static vec6 comparable(const model& m, const dofmap& d, int owner, int count) {
    vec6 by = vec6::Ones();
    const int body = d.bodyof[std::size_t(owner)];
    if (body < 0) return by;
    const ownerspace& space = d.spaces[std::size_t(d.spaceof[std::size_t(owner)])];
    for (int j = 0; j < count; ++j) {
        const vec6 column = space.z.col(j);
        const bool turns = m.twod ? column.head<2>().norm() < std::abs(column[2])
                                  : column.head<3>().norm() < column.tail<3>().norm();
        if (turns) by[j] = 1 / bodylength(m, d.bodies[std::size_t(body)]);
    }
    return by;
}

// How far Singles put the nodes of a body from their places, over its length.
static double roundingof(const model& m, const dofmap& d, int owner) {
    const rigidbody& body = d.bodies[std::size_t(d.bodyof[std::size_t(owner)])];
    double far = 0;
    for (const int n : body.nodes)
        far = std::max(far, m.nodes[std::size_t(n)].cwiseAbs().maxCoeff());
    return 4 * double(std::numeric_limits<float>::epsilon()) * far / bodylength(m, body);
}

void holdunstiffened(const model& m, const settings& s, masses moved, dofmap& d, runlog& log) {
    double heldtotal = 0, loose = 0, tied = 0;
    const std::vector<ownerblock> blocks = blocksof(m, s, moved, d);
    std::vector<float> angle;
    if (!blocks.empty()) angle = flatness(m, s, d);
    for (const ownerblock& block : blocks) {
        mat6 empty = mat6::Zero();
        bool unitsalone = true;
        const int count = unknownsof(d, block.owner);
        const bool single = d.bodyof[std::size_t(block.owner)] < 0;
        const vec6 by = comparable(m, d, block.owner, count);
        const mat6 scaled = by.asDiagonal() * block.stiffness * by.asDiagonal();
        const double noise = angleof(d, angle, block.owner);
        const int unstiffened =
            single ? emptydirections(scaled, count, noise * noise, empty, unitsalone)
                   : emptymotions(scaled, by.asDiagonal() * block.motion * by.asDiagonal(), count,
                                  noise, roundingof(m, d, block.owner), empty);
        if (unstiffened == 0) continue;
        const mat6 mass = by.asDiagonal() * block.mass * by.asDiagonal();
        const int found = masslessof(mass, count, empty, unstiffened);
        unitsalone &= found == unstiffened;
        if (iscounted(m, block.owner)) {
            heldtotal += found;
            tied += unstiffened - found;
            loose += single && found == count && count == d.pernode;
        }
        if (found == 0) continue;
        if (single && unitsalone)
            holdplain(d, block.owner, empty, found);
        else
            holdinspace(m, d, block.owner, empty, found, by);
    }
    allranks().sum(&heldtotal, 1);
    allranks().sum(&loose, 1);
    allranks().sum(&tied, 1);
    if (tied > 0)
        log.line("Degrees of freedom that no element stiffens, free to move with their mass: " +
                 std::to_string(long(tied)));
    if (heldtotal > 0)
        log.line(
            "Held degrees of freedom that no element stiffens: " + std::to_string(long(heldtotal)) +
            (loose > 0 ? " (" + std::to_string(long(loose)) + " node(s) without any stiffness)"
                       : ""));
    warnflattened(m, s, d, log);
}
