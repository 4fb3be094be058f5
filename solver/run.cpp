// SPDX-License-Identifier: GPL-3.0-or-later
// The stages of an analysis.
#include "solver/run.h"

#include <algorithm>
#include <cmath>
#include <future>
#include <optional>

#include "core/checksum.h"
#include "solver/base/control.h"
#include "solver/base/memory.h"
#include "solver/base/parallel.h"
#include "solver/base/refuse.h"
#include "solver/dofs/deal.h"
#include "solver/dofs/faraway.h"
#include "solver/dofs/heldloads.h"
#include "solver/dofs/makedofs.h"
#include "solver/elements/clamped.h"
#include "solver/elements/curve.h"
#include "solver/elements/edges.h"
#include "solver/elements/span.h"
#include "solver/elements/twins.h"
#include "solver/equations/engines.h"
#include "solver/equations/mechanism.h"
#include "solver/equations/order.h"
#include "solver/equations/roundinghold.h"
#include "solver/equations/solve.h"
#include "solver/processes/ranks.h"
#include "solver/readmodel.h"
#include "solver/results/checkpoint.h"
#include "solver/results/falsebending.h"
#include "solver/results/logtexts.h"
#include "solver/results/oldresults.h"
#include "solver/results/refine.h"
#include "solver/results/sumfile.h"
#include "solver/results/writeresults.h"

// doftype as the workbench derives it, for runs without a control file.
static int derivedtype(const model& m, bool twod) {
    return (twod ? 1 : 2) + (turnsnodes(m) ? 1 : 0);
}

static void checkelement(const element& el) {
    const elementkind& kind = kindof(el.type);
    if (kind.fam == family::link && el.node[0] == el.node[1])
        refuseelement(el, "has node " + std::to_string(nodenameof(el, 0)) +
                              " at both ends; give it another node at one of them");
    if (!kind.check && el.type != typerigid)
        refuseelement(el, "is of a kind that this version does not take yet");
    if (kind.check) kind.check(el);
}

static void checkelements(const model& m, const settings& s) {
    refusefirstof(m, [&](int e) { checkelement(elementat(m, s, e)); });
}

// --- static cases -------------------------------------------------------------------------------

namespace {
// What held directions mean to the loads.
struct holding {
    std::vector<float> angle;  // by node; empty where nothing is held
    std::vector<vec6> letgo;   // by case from 0: what nothing takes up

    // Part of the loads that the rounding of planes may tilt into held directions.
    double noise() const {
        double most = angle.empty() ? 0 : *std::ranges::max_element(angle);
        allranks().most(&most, 1);
        return std::min(most, quietangle);
    }
};
}  // namespace

static std::vector<double> displacementsof(const dofmap& d, const displacements& u, int column) {
    const auto from = u.u.begin() + std::ptrdiff_t(d.equation.size()) * column;
    return {from, from + std::ptrdiff_t(d.equation.size())};
}

// The case in which most moves.
static std::vector<double> largestmotion(const dofmap& d, const displacements& u) {
    std::vector<double> most(std::size_t(u.cases), 0);
    for (std::size_t i = 0; i < u.u.size(); ++i) {
        double& at = most[i / d.equation.size()];
        at = std::max(at, std::fabs(u.u[i]));
    }
    allranks().most(most.data(), most.size());
    return displacementsof(d, u, int(std::ranges::max_element(most) - most.begin()));
}

// Of factors beyond what a double holds, as of units or moduli of 1e-320.
static void refusenonumbers(const double* values, std::size_t count, const std::string& what) {
    double bad =
        std::all_of(values, values + count, [](double v) { return std::isfinite(v); }) ? 0 : 1;
    allranks().most(&bad, 1);
    if (bad != 0)
        refuse(
            what +
            " are beyond all numbers; check the loads, the elasticity and sections of the groups "
            "and the units of feiflu.ini for values of next to nothing or without bound");
}

// The load cases first..last. applied: out, their loads, numbered like the displacements.
static casepart solvecases(const model& m, const settings& s, const equations& q, engine& l,
                           int first, int last, std::vector<double>& applied, holding& held,
                           runlog& log) {
    const dofmap& d = q.dofs;
    log.stage("loads");
    const std::vector<double> byconstants = constantforces(m, s, d);
    casepart r;
    displacements& u = r.u;
    u.cases = last + 1 - first;
    u.u = zeros(d.equation.size() * std::size_t(u.cases));
    applied = zeros(u.u.size());
    std::vector<double> columns = zeros(std::size_t(d.unknowns) * std::size_t(u.cases));
    std::vector<caseloads> loads;
    for (int lc = first; lc <= last; ++lc) loads.emplace_back(m, s, lc);
    caseloads::collect(loads, d, applied.data(), log);
    for (int c = 0; c < u.cases; ++c) {
        const int lc = first + c;
        const std::string& name = m.cases[std::size_t(lc)].name;
        double* const load = applied.data() + std::size_t(c) * d.equation.size();
        refusenonumbers(load, d.equation.size(), "The loads of case " + std::to_string(lc));
        checkheldloads(m, d, held.angle, load, lc, log);
        held.letgo.push_back(heldload(m, d, load));
        double any = !byconstants.empty() ||
                     std::any_of(load, load + d.equation.size(), [](double v) { return v != 0; });
        allranks().most(&any, 1);
        if (any == 0)
            log.warn("Case " + std::to_string(lc) + " \"" + name +
                         "\" has no load; its displacements are 0",
                     lc);
        log.progress("loads", int(100.0 * lc / m.ncases()));
    }
    eachcase(u.cases, [&](std::size_t c) {
        const double* const load = applied.data() + c * d.equation.size();
        std::vector<double> f(load, load + d.equation.size());
        for (std::size_t i = 0; i < byconstants.size(); ++i) f[i] += byconstants[i];
        condense(d, f.data(), columns.data() + c * std::size_t(d.unknowns));
    });
    log.stage("solve");
    r.residual.assign(std::size_t(u.cases), 0);
    if (d.unknownsofall > 0) {
        solvedcolumns solved = solvecolumns(q, l, columns.data(), u.cases);
        r.residual = std::move(solved.error);
        const double* const softest =
            columns.data() + std::size_t(d.unknowns) * std::size_t(std::max(0, solved.softest));
        if (solved.softest >= 0 && l.factors() && solved.stiffness < stiffnessofrounding(m))
            refuseheldbyrounding(m, s, q, l, solved.load, softest, log);
    }
    if (const std::string words = l.remark(); !words.empty()) log.line(words);
    eachcase(u.cases, [&](std::size_t c) {
        expand(d, columns.data() + c * std::size_t(d.unknowns), u.u.data() + c * d.equation.size());
    });
    for (int c = 0; c < u.cases; ++c) {
        refusenonumbers(u.u.data() + std::size_t(c) * d.equation.size(), d.equation.size(),
                        "The displacements of case " + std::to_string(first + c));
        const double rest = r.residual[std::size_t(c)];
        const std::string number = std::to_string(first + c);
        log.line("Case " + number + " residual |Ku-f|/(|K||u|+|f|) = " + shortnumber(rest));
        const double wrong = 1e-6;
        if (!(rest < wrong))
            refuse("The equations of case " + number +
                   " could not be solved to a useful accuracy (residual " + shortnumber(rest) +
                   "). " + whyillconditioned(m, s, d, displacementsof(d, u, c)));
    }
    return r;
}

// The SPRING2 element with the lowest number whose nodes lie apart, 0: none.
static int springapart(const model& m) {
    std::vector<double> first = {-INFINITY};  // the element's number, its sign changed
    for (int e = m.nelems(); e > 0; --e) {
        const elementdef& def = m.elements[std::size_t(e)];
        const auto at = [&](int k) { return m.nodes[std::size_t(def.node[k])]; };
        if (def.type == typespring2 && at(0) != at(1)) first[0] = -m.nameof(e);
    }
    first = allranks().greatest(first);
    return first[0] == -INFINITY ? 0 : int(-first[0]);
}

// Elements too far apart in stiffness are themselves rounding, which no refinement finds. What
// noise of coordinates takes out of a plane, held directions carry: displacements stay right.
static void tellunbalanced(const model& m, const settings& s, double part, runlog& log) {
    const std::string words = "The reactions miss the loads by " + shortnumber(part) + " of them";
    const double wrong = 1e-2;
    const int spring = springapart(m);
    const std::string apart = stiffnesstoofarapart(m, s, nodigits);
    if (spring > 0)
        log.warn(words + ": the nodes of the SPRING2 element " + std::to_string(spring) +
                 " lie apart, so that its forces make a moment that nothing balances");
    else if (part > wrong && !apart.empty())
        refuse(words + ". " + apart);
    else
        log.warn(words + ": the model is ill-conditioned");
}

// Where rounding spoils the balance of a case, the displacements get more digits: those of a thin
// plate are wrong by up to a hundred times what the reactions miss of the loads. Two ways of
// solving shall agree to nine digits.
static void refinereactions(const model& m, const settings& s, const equations& q, engine& l,
                            const std::vector<double>& applied, const holding& held, casepart& r,
                            runlog& log) {
    const auto balance = [&](const vec3& about = vec3::Zero()) {
        return worstbalance(r.reactions, held.letgo, about);
    };
    const double good = 1e-11, before = balance();
    double now = before, change = 1, uncertainty = 0;
    const int mostrounds = 3;
    const double settled = 1e-10;  // there is nothing left to refine
    for (int round = 0; round < mostrounds && now > good && q.dofs.unknownsofall > 0; ++round) {
        const double former = change;
        change = refine(m, s, q, l, applied, r.u);
        uncertainty = change * change / former;  // what the next round would change
        r.reactions = findreactions(m, s, q.dofs, r.u, applied, log);
        now = balance();
        if (change < settled) break;
    }
    const double unbalanced = 1e-6, uncertain = 1e-6, wrong = 1e-2;
    if (!(uncertainty < wrong))
        refuse("The displacements could not be found, they change by " + shortnumber(change) +
               " of themselves when they are refined. " +
               whyillconditioned(m, s, q.dofs, largestmotion(q.dofs, r.u)));
    if (uncertainty > uncertain)
        log.warn("The displacements are uncertain by " + shortnumber(uncertainty) +
                 " of themselves. " + whyillconditioned(m, s, q.dofs, largestmotion(q.dofs, r.u)));
    const double noise = held.noise(), missed = balance(boxof(m).middle());
    if (missed > std::max(unbalanced, noise)) tellunbalanced(m, s, missed, log);
    if (now != before)
        log.line("Reactions out of balance by " + shortnumber(before) + ", refined to " +
                 shortnumber(now));
}

static casepart solveblock(const model& m, const settings& s, const equations& q,
                           const wanted& what, engine& l, int first, int last, holding& held,
                           runlog& log) {
    std::vector<double> applied;
    held.letgo.clear();
    casepart part = solvecases(m, s, q, l, first, last, applied, held, log);
    if (what.reactions) {
        log.stage("reactions");
        part.reactions = findreactions(m, s, q.dofs, part.u, applied, log);
        refinereactions(m, s, q, l, applied, held, part, log);
    }
    return part;
}

static void addnumbers(std::vector<double>& to, std::vector<double>&& more) {
    if (to.empty())
        to = std::move(more);
    else
        to.insert(to.end(), more.begin(), more.end());
}

static void addpart(results& r, casepart&& part) {
    const std::size_t before = r.u.u.size();
    r.u.cases += part.u.cases;
    addnumbers(r.u.u, std::move(part.u.u));
    if (!part.u.rest.empty()) r.u.rest.resize(before);  // what came before leaves nothing off
    addnumbers(r.u.rest, std::move(part.u.rest));
    if (!r.u.rest.empty()) r.u.rest.resize(r.u.u.size());
    addnumbers(r.residual, std::move(part.residual));
    reactionset &to = r.reactions, &more = part.reactions;
    addnumbers(to.force, std::move(more.force));
    const std::ptrdiff_t slot0 = to.load.empty() || more.load.empty() ? 0 : 1;
    to.load.insert(to.load.end(), more.load.begin() + slot0, more.load.end());
    to.reaction.insert(to.reaction.end(), more.reaction.begin() + slot0, more.reaction.end());
    to.least.insert(to.least.end(), more.least.begin() + slot0, more.least.end());
}

// Blocks of load cases, of which a checkpoint may have the first ones already.
static void solveblocks(const model& m, const settings& s, const equations& q, const wanted& what,
                        results& r, runlog& log) {
    const int block = s.checkpoint > 0 ? s.checkpoint : std::max(m.ncases(), 1);
    checkpoint kept(m.base + ".ckp", s.checkpoint > 0 ? what.checkpoint : "");
    for (int i = 0; i < kept.found(); ++i) addpart(r, kept.take(i, log));
    if (kept.found() > 0)
        log.line("Cases 1 to " + std::to_string(r.u.cases) + " as an earlier run left them in " +
                 m.base + ".ckp");
    if (r.u.cases > 0 && r.u.cases == m.ncases()) return;
    const std::unique_ptr<engine> l = makeengine();
    log.stage("analyse");
    l->describe(m, q.dofs);
    if (q.dofs.unknownsofall > 0) {
        analysefactor(q, *l, std::min(block, m.ncases()), log);
        factorise(m, s, q, *l, log);
    }
    holding held;
    double anyheld = !q.dofs.held.empty() || std::ranges::count(q.dofs.heldplain, 1) > 0;
    allranks().most(&anyheld, 1);
    if (anyheld != 0) held.angle = flatness(m, s, q.dofs);
    while (r.u.cases < m.ncases()) {
        const int last = std::min(r.u.cases + block, m.ncases());
        const runlog::place from = log.here();
        casepart part = solveblock(m, s, q, what, *l, r.u.cases + 1, last, held, log);
        if (block < m.ncases()) kept.keep(part, from, log);
        addpart(r, std::move(part));
    }
}

static void solvestatic(const model& m, const settings& s, const equations& q, const wanted& what,
                        results& r, runlog& log) {
    solveblocks(m, s, q, what, r, log);
    telllargest(m, q.dofs, r.u, log);
    if (what.reactions) tellbalance(m, r.reactions, log);
    log.stage("stress");
    if (what.linestresses) r.lines = findlineends(m, s, q.dofs, r.u, log);
    if (what.platestresses) r.plates = findplatestresses(m, s, q.dofs, r.u, log);
    warnfalsebending(m, s, q.dofs, r.plates, r.u.cases, log);
    for (int lc = 1; lc <= r.u.cases; ++lc) keepgiven(q.dofs, r.u.of(q.dofs, lc));
}

// --- the whole ----------------------------------------------------------------------------------

// Processes on one machine share its cores.
static void usethreads(const settings& s) {
    const int cores = std::max(1, int(std::thread::hardware_concurrency()));
    const bool shared = s.threads == 0 && !allranks().alone();
    setthreads(shared ? std::max(1, cores / allranks().here()) : s.threads);
}

static void checkcontents(const model& m) {
    if (m.allnodes() == 0) refuse("The model has no nodes; there is nothing to analyse");
    if (m.allelements() == 0) refuse("The model has no elements; there is nothing to analyse");
}

// What elements learn of their neighbours.
static void measureneighbours(model& m, const settings& s) {
    const cornerlist corners = listcorners(m);
    measurecurve(m, corners);
    findclamped(m, corners);
    measureedges(m, s, corners);
}

// Modes leave free what moves with its mass alone, which cases hold: each has equations of its own.
// A part that has been solved lacks what its neighbours told, so that processes keep theirs.
static results solveboth(model& m, const settings& s, int doftype, const wanted& what,
                         runlog& log) {
    wanted cases = what, modes = what;
    cases.modes = modes.displacements = false;
    std::optional<model> part;
    if (!allranks().alone()) part = m;
    results r = solvemodel(m, s, doftype, cases, log);
    if (part) m = std::move(*part);
    r.modes = solvemodel(m, s, doftype, modes, log).modes;
    return r;
}

results solvemodel(model& m, const settings& s, int doftype, const wanted& what, runlog& log) {
    if (what.displacements && what.modes) return solveboth(m, s, doftype, what, log);
    log.stage("check");
    usethreads(s);
    if (!allranks().alone() && m.rankof.empty()) {
        keepstretch(m);
        dealmodel(m);
    }
    const int anadof = analysiskind(m, doftype > 0 ? doftype : derivedtype(m, m.twod));
    m.twod = anadof == 1 || anadof == 2;
    tellunits(s, log);
    tellmodel(m, log);
    tellcases(m, log);
    log.line(std::string(m.twod ? "2-D" : "3-D") + " analysis, anadof " + std::to_string(anadof));
    checkcontents(m);
    m.slip.clear();  // of a run before; the model may have grown since
    m.curve.clear();
    m.fold.clear();
    checkelements(m, s);
    telltwins(m, log);
    for (int lc = 1; lc <= m.ncases(); ++lc) {
        checkacceleration(m, lc, log);
        checkwaveloads(m, s, lc, log);
    }
    checkfaraway(m, s, log);
    measureneighbours(m, s);
    results r;
    r.masses = groupmasses(m, s);
    tellmass(r.masses[0], s, log);
    const masses moved = !what.modes        ? masses::none
                         : what.elementmass ? masses::all
                                            : masses::points;
    equations q = makeequations(m, s, anadof, log, moved);
    r.halfbandwidth = q.halfbandwidth;
    if (what.displacements) solvestatic(m, s, q, what, r, log);
    if (what.modes) {
        r.modes = findmodes(m, s, q, what.elementmass, log);
        tellmodes(r.modes, log);
    }
    r.dofs = std::move(q.dofs);
    return r;
}

namespace {
// This process works alone while it stands.
class onewhile {
  public:
    onewhile() : former(allranks()) { workalone(); }
    ~onewhile() { setranks(former); }

  private:
    ranks& former;
};
}  // namespace

static settings takesettings(const job& j, runlog& log) {
    const std::string ini = j.appdir + "/feiflu.ini";
    settings s;
    onhosts([&] {
        s = readsettings(ini, log);
        followmodel(s, j.base, log);
    });
    allranks().checksame("The file " + ini,
                         settingsname(s) + " " + std::to_string(s.modes) + " " + s.scratch);
    usethreads(s);
    return s;
}

// The name of the engine that the settings ask for, or that "auto" finds best; the same everywhere.
// whole: out, the model where the choice took it.
static std::string findengine(std::optional<model>& whole, const settings& s, const job& j,
                              runlog& log) {
    if (s.engine != "auto") return s.engine;
    ranks& all = allranks();
    const std::vector<double> room = all.gather({freememory() / all.here()});
    std::string name;
    together([&] {
        if (!all.first()) return;
        const onewhile apart;
        model& m = whole.emplace(readmodel(j.base, log));
        checkcontents(m);
        const int anadof = analysiskind(m, j.doftype > 0 ? j.doftype : derivedtype(m, j.twod));
        m.twod = anadof == 1 || anadof == 2;
        checkelements(m, s);
        engineneeds needs;
        needs.own = factorneed(m, s, anadof, std::max(m.ncases(), 1));
        needs.free = freememory();
        needs.freetoeach = *std::ranges::min_element(room);
        needs.processes = all.count();
        needs.scratch = !s.scratch.empty();
        const enginechoice choice = chooseengine(needs);
        // A program without the others tries what it has and refuses before the work.
        name = hasengine(choice.engine) ? choice.engine : all.alone() ? "cholmod" : "mumps";
        log.line("engine = auto: " + name + ", for " + choice.why);
    });
    return all.textoffirst(name);
}

// False where this process is left over: the own factor is the work of one.
static bool takeengine(std::optional<model>& whole, const settings& s, const job& j, runlog& log) {
    const std::string name = findengine(whole, s, j, log);
    useengine(name, s);
    usedissector(s.ordering, log);
    if (allranks().alone()) return true;
    log.line("Engine " + name + ", " + std::to_string(allranks().count()) + " processes");
    if (name != "cholmod") return true;
    const bool first = allranks().first();
    workalone();
    return first;
}

// Among processes each reads its part, and what the files say is told once.
static model takefiles(const job& j, std::optional<model>& whole, runlog& log) {
    if (!whole) return readmodel(j.base, log);
    if (allranks().alone()) return std::move(*whole);
    whole.reset();
    runlog unheard;
    unheard.quiet();
    return readmodel(j.base, unheard);
}

// Analyses of the same name come to the same numbers.
static std::string checkpointname(const job& j, const settings& s, const std::string& checksum) {
    return checksum + " " + std::to_string(j.doftype) + (j.twod ? " 2d" : "") +
           (j.solve ? " reactions " : " ") + std::to_string(allranks().count()) + " " +
           settingsname(s);
}

void analyse(const job& j, runlog& log) {
    log.stage("read");
    if (!j.stiffness)
        log.line("The stiffness matrix is compiled all the same: none is kept from run to run");
    const settings s = takesettings(j, log);
    std::optional<model> whole;
    if (!takeengine(whole, s, j, log)) return;
    usethreads(s);  // fewer processes may have become of them
    // What the results are of: nobody waits for it before they stand.
    const auto checksum = std::async(modelchecksum, j.base).share();
    model m = takefiles(j, whole, log);
    if (!allranks().alone()) allranks().checksame("The model " + j.base, checksum.get());
    giveroomback();  // not sooner: reading has work for all cores
    m.twod = j.twod;
    wanted what;
    what.reactions = j.solve;
    what.linestresses = j.linestress;
    what.platestresses = j.platestress;
    what.displacements = j.solve || what.linestresses || what.platestresses;
    what.modes = j.eigen;
    what.elementmass = j.elementmass;
    if (s.checkpoint > 0) what.checkpoint = checkpointname(j, s, checksum.get());
    const results r = solvemodel(m, s, j.doftype, what, log);
    log.stage("write");
    const bool first = allranks().first();
    if (first) writesummary(m, r.halfbandwidth);
    if (first) writemasses(m, r.masses);
    if (j.solve) writedisplacements(m, r.dofs, r.u);
    if (j.solve) writereactions(m, r.dofs, r.u, r.reactions);
    if (j.eigen) writemodes(m, r.dofs, r.modes);
    if (j.linestress) writelines(m, s, r.dofs, r.u, r.lines);
    if (j.platestress) writeplatestresses(m, s, r.plates, m.ncases());
    armresults({});  // they are whole
    const std::string sums = j.statics() ? staticsums(m, s, r, log) : "";
    if (first && j.statics()) writesums(j.base, runkind::statics, checksum.get(), m.ncases(), sums);
    if (first && j.eigen)
        writesums(j.base, runkind::modes, checksum.get(), r.modes.count(), modesums(r, log));
    if (s.checkpoint > 0) checkpoint(j.base + ".ckp", "").drop();
    log.stage("");
    log.progress("done", 100);
}
