// SPDX-License-Identifier: GPL-3.0-or-later
// The two passes over a Cosmos text.
#include "exchange/cosmosinterface.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/platform.h"
#include "core/session.h"
#include "core/textfile.h"
#include "exchange/cosmosgroups.h"
#include "exchange/cosmossystems.h"
#include "exchange/textlines.h"

namespace {

struct command {
    long line = 0;
    std::string_view word, fields;
};

// An element before all nodes are known.
struct pendingelement {
    long number = 0, line = 0;
    std::array<long, 4> nodes{};
    int count = 0;
    activesets sets;
};

class cosmosreader {
  public:
    cosmosreader(std::string text, const std::string& name, imported& f, purposes purpose)
        : found(f), report(f.report), in(std::move(text), name), groups(f, purpose) {
        collect();
    }
    void firstpass();
    void secondpass();
    void build();

  private:
    void collect();
    void firstitem(const command& c);
    bool seconditem(const command& c);
    void readcoor(const command& c);
    void readcs(const command& c);
    void readcsangl(const command& c);
    void readpoint(const command& c);
    void readnode(const command& c);
    void readelem(const command& c);
    void readnodeset(const command& c) { putnode(c, 3); }
    void readelemset(const command& c);
    void readdisp(const command& c);
    void readforce(const command& c);
    void readac(const command& c);
    void readegroup(const command& c);
    void readrconst(const command& c);
    void readmprop(const command& c);

    void putnode(const command& c, std::size_t ignored);
    void putelement(const command& c, long number, const std::vector<long>& list);
    bool split(const command& c);
    bool whole(const command& c, std::size_t i, const char* what, long& value, long missing);
    bool real(const command& c, std::size_t i, const std::string& what, double& value);
    bool point(const command& c, std::size_t first, const char* what, triple& value);
    std::string_view field(std::size_t i) const {
        return i < fields.size() ? fields[i] : std::string_view();
    }
    void badsystem(const command& c, long number);
    bool numberednodes(const command& c, std::size_t lastfield, std::vector<int>& list);
    bool conditions(const command& c, const char* const (&labels)[7], bool ofloads,
                    std::size_t lastfield);
    std::vector<int> freedoms(std::string_view label, const char* const (&labels)[7],
                              bool ofloads) const;
    importedcase& loadcase();
    void buildelement(const pendingelement& e);
    void progress(std::size_t i, double from);

    imported& found;
    importreport& report;
    textlines in;
    std::vector<command> commands;
    std::vector<std::string_view> fields;  // of the command in hand, the word left out
    activesets active;
    cosmossystems systems;
    cosmosgroups groups;
    std::unordered_map<long, triple> keypoints;
    numbertable nodes, elementplaces;
    std::vector<pendingelement> elements;
    std::map<long, std::size_t> cases;
    long cardnumber = 0;  // of the last element without a number of its own
    long visited = 0;     // nodes that ranges have gone through
    bool systemtold = false;
    bool isagain = false;  // a command that the first pass has read comes again
};

const char* const displacementlabels[7] = {"", "UX", "UY", "UZ", "ROTX", "ROTY", "ROTZ"};
const char* const forcelabels[7] = {"", "FX", "FY", "FZ", "MX", "MY", "MZ"};

}  // namespace

// --- commands and fields ------------------------------------------------------------------------

// Is the word a beginning of the name, whatever the case?
static bool begins(std::string_view word, std::string_view name) {
    return !word.empty() && word.size() <= name.size() &&
           sameword(word, name.substr(0, word.size()));
}

static bool isactset(std::string_view word) {
    return word.size() > 1 && begins(word, "ACTSET");
}

// One of the words of four characters, which may go on to the whole name.
static bool isword(std::string_view word, std::string_view name) {
    return word.size() >= 4 && begins(word, name);
}

static bool isremark(std::string_view line) {
    return line.empty() || line[0] == '!' || sameword(line.substr(0, 2), "C*");
}

void cosmosreader::collect() {
    std::string_view line;
    while (in.next(line)) {
        line = trimmed(line);
        if (isremark(line)) continue;
        line = trimmed(line.substr(0, line.find('!')));
        const std::size_t end = std::min(line.find_first_of(", \t"), line.size());
        std::string_view rest = trimmed(line.substr(end));
        if (rest.starts_with(',')) rest.remove_prefix(1);
        commands.push_back({in.number(), line.substr(0, end), rest});
    }
}

void cosmosreader::progress(std::size_t i, double from) {
    const std::size_t often = 8192;
    if (i % often == 0) readingprogress(in.name(), from + double(i) / double(commands.size()) / 2);
}

// The fields of a command: between commas, or between blanks where it has no comma. False, told,
// for a line of several commands.
bool cosmosreader::split(const command& c) {
    fields.clear();
    if (c.fields.find('$') != c.fields.npos) {
        if (!isagain) report.error("several commands on one line ($) are not read", c.line);
        return false;
    }
    std::string_view rest = c.fields, value;
    if (rest.find(',') != rest.npos)
        while (nextfield(rest, value)) fields.push_back(value);
    else
        while (nextword(rest, value)) fields.push_back(value);
    return true;
}

static std::string where(const command& c) {
    return uppercase(c.word) + ": ";
}

bool cosmosreader::whole(const command& c, std::size_t i, const char* what, long& value,
                         long missing) {
    value = missing;
    if (field(i).empty()) return true;
    const double most = 1e15;
    if (double number = 0;
        readreal(field(i), number) && number == std::floor(number) && std::fabs(number) < most) {
        value = long(number);
        return true;
    }
    if (!isagain)
        report.error(where(c) + what + " is not a whole number: " + shown(field(i)), c.line);
    return false;
}

// An empty field is 0.
bool cosmosreader::real(const command& c, std::size_t i, const std::string& what, double& value) {
    value = 0;
    if (field(i).empty() || readreal(field(i), value)) return true;
    report.error(where(c) + what + " is not a number: " + shown(field(i)), c.line);
    return false;
}

bool cosmosreader::point(const command& c, std::size_t first, const char* what, triple& value) {
    static const char* const axes[] = {"x", "y", "z"};
    for (std::size_t k = 0; k < 3; ++k)
        if (!real(c, first + k, std::string(axes[k]) + " of " + what, value[k])) return false;
    return true;
}

// --- first pass: systems, nodes, elements -------------------------------------------------------

void cosmosreader::firstpass() {
    for (std::size_t i = 0; i < commands.size(); ++i) {
        progress(i, 0);
        firstitem(commands[i]);
    }
    active = {};
}

void cosmosreader::firstitem(const command& c) {
    if (isword(c.word, "COORDINATE"))
        readcoor(c);
    else if (sameword(c.word, "CS"))
        readcs(c);
    else if (sameword(c.word, "CSANGL"))
        readcsangl(c);
    else if (sameword(c.word, "PT"))
        readpoint(c);
    else if (isword(c.word, "NODES"))
        readnode(c);
    else if (isword(c.word, "ELEMENT"))
        readelem(c);
    else if (isactset(c.word))
        readac(c);
}

void cosmosreader::badsystem(const command& c, long number) {
    report.error("coordinate system " + numbertext(number) + " is not known", c.line);
    if (!systemtold) theplatform().message("Error coordinate system ", icons::exclamation);
    systemtold = true;
}

void cosmosreader::readcoor(const command& c) {
    long number = 0, type = 0;
    triple origin, onx, inplane;
    if (split(c) && whole(c, 0, "the system", number, 3) && whole(c, 1, "the type", type, 0) &&
        point(c, 2, "the origin", origin) && point(c, 5, "the point on x", onx) &&
        point(c, 8, "the point in the plane", inplane) &&
        !systems.add(number, type, origin, onx, inplane))
        badsystem(c, number);
}

void cosmosreader::readcs(const command& c) {
    long number = 0, type = 0;
    if (!split(c) || !whole(c, 0, "the system", number, 3) || !whole(c, 1, "the type", type, 0))
        return;
    triple corners[3];
    for (std::size_t k = 0; k < 3; ++k) {
        long keypoint = 0;
        if (!whole(c, 2 + k, "a key point", keypoint, 0)) return;
        const auto at = keypoints.find(keypoint);
        if (at == keypoints.end())
            return report.error(where(c) + "key point " + numbertext(keypoint) + " is not defined",
                                c.line);
        corners[k] = at->second;
    }
    if (!systems.add(number, type, corners[0], corners[1], corners[2])) badsystem(c, number);
}

void cosmosreader::readcsangl(const command& c) {
    long number = 0, type = 0;
    triple origin, angles;
    if (!split(c) || !whole(c, 0, "the system", number, 3) || !whole(c, 1, "the type", type, 0) ||
        !point(c, 2, "the origin", origin) || !point(c, 5, "the angles", angles))
        return;
    if (!systems.addturned(number, type, origin, angles)) return badsystem(c, number);
    if ((angles[0] != 0) + (angles[1] != 0) + (angles[2] != 0) > 1)
        report.warn("Angles of systems are taken about z, then x, then y", c.line);
}

void cosmosreader::readpoint(const command& c) {
    long number = 0;
    triple at;
    if (split(c) && whole(c, 0, "the key point", number, 0) && point(c, 1, "a key point", at))
        keypoints[number] = at;
}

void cosmosreader::readnode(const command& c) {
    const std::size_t systemfield = 4;
    if (!split(c)) return;
    const long before = active.system;
    if (!whole(c, systemfield, "the system", active.system, before)) return;
    putnode(c, 1);
    active.system = before;
}

// node, x, y, z; further fields are turns of the node's own axes, which the model does not have.
void cosmosreader::putnode(const command& c, std::size_t ignored) {
    const std::size_t tail = 4;
    long number = 0;
    triple local, at;
    if (!split(c) || !whole(c, 0, "the number", number, 0)) return;
    if (number < 1) return report.error(where(c) + "a node needs a number from 1", c.line);
    static const char* const axes[] = {"x", "y", "z"};
    for (std::size_t k = 0; k < 3; ++k)
        if (!real(c, 1 + k, std::string(axes[k]) + " of node " + numbertext(number), local[k]))
            return;
    if (!systems.toglobal(active.system, local, at)) return badsystem(c, active.system);
    double value = 0;
    for (std::size_t i = tail; ignored > 1 && i < fields.size(); ++i)
        if (readreal(fields[i], value) && value != 0) {
            report.warn("What stands behind the coordinates of nodes is not read", c.line);
            break;
        }
    if (const int known = nodes.find(number); known > 0) {
        report.warn("node " + numbertext(number) + " is defined again, the later place holds",
                    c.line);
        report.about(reportitems::nodes, known);
        found.nodes[std::size_t(known) - 1] = at;
        return;
    }
    nodes.put(number, found.addnode(at));
    found.nodenumbers.push_back(number);
}

void cosmosreader::putelement(const command& c, long number, const std::vector<long>& list) {
    pendingelement e{number, c.line, {}, int(list.size()), active};
    if (number < 1) return report.error(where(c) + "an element needs a number from 1", c.line);
    if (list.size() < 2 || list.size() > 4)
        return report.error(where(c) + "an element of " + numbertext(long(list.size())) +
                                " nodes has no place in the model",
                            c.line);
    std::ranges::copy(list, e.nodes.begin());
    cardnumber = std::max(cardnumber, number);
    const int known = elementplaces.find(number);
    if (known > 0) {
        report.warn("element " + numbertext(number) + " is defined again, the later one holds",
                    c.line);
        elements[std::size_t(known) - 1] = e;
        return;
    }
    elements.push_back(e);
    elementplaces.put(number, int(elements.size()));
}

// element, nodes
void cosmosreader::readelem(const command& c) {
    long number = 0, node = 0;
    if (!split(c) || !whole(c, 0, "the number", number, 0)) return;
    std::vector<long> list;
    for (std::size_t i = 1; i < fields.size(); ++i) {
        if (!whole(c, i, "a node", node, 0)) return;
        if (node != 0) list.push_back(node);
    }
    putelement(c, number, list);
}

// --- second pass: sets, the second forms, constraints and loads ---------------------------------

void cosmosreader::secondpass() {
    for (std::size_t i = 0; i < commands.size(); ++i) {
        progress(i, 0.5);
        const command& c = commands[i];
        if (!seconditem(c)) report.skipped("Commands " + shown(uppercase(c.word)), c.line);
    }
}

// The first letters choose the kind, the whole word decides. False for what is not read.
bool cosmosreader::seconditem(const command& c) {
    const char letter = c.word.empty() ? ' ' : uppercase(c.word.substr(0, 1))[0];
    if (letter == 'N') {
        if (isword(c.word, "NODES")) return true;
        if (!sameword(c.word, "ND") && !begins(c.word, "NODE")) return false;
        readnodeset(c);
    } else if (letter == 'E') {
        if (isword(c.word, "ELEMENT")) return true;
        if (sameword(c.word, "EGROUP"))
            readegroup(c);
        else if (begins(c.word, "ELEM"))
            readelemset(c);
        else
            return false;
    } else if (letter == 'D' && begins(c.word, "DND"))
        readdisp(c);
    else if (letter == 'F' && begins(c.word, "FND"))
        readforce(c);
    else if (isactset(c.word)) {
        isagain = true;  // the first pass has told its faults
        readac(c);
        isagain = false;
    } else if (sameword(c.word, "RCONST"))
        readrconst(c);
    else if (sameword(c.word, "MPROP"))
        readmprop(c);
    else
        return isword(c.word, "COORDINATE") || sameword(c.word, "CS") ||
               sameword(c.word, "CSANGL") || sameword(c.word, "PT");
    return true;
}

// EL: element, entity, entity number, count, nodes. A bare E: nodes, numbers count up.
void cosmosreader::readelemset(const command& c) {
    if (!split(c)) return;
    const bool iscard = c.word.size() == 1;
    long number = cardnumber + 1, count = long(fields.size()), node = 0;
    const std::size_t first = iscard ? 0 : 4;
    if (!iscard) {
        if (!whole(c, 0, "the number", number, 0) || !whole(c, 3, "the count", count, 0)) return;
        if (sameword(field(1), "VL")) return report.skipped("Solid elements (VL)", c.line);
    }
    std::vector<long> list;
    const long most = 64;  // nodes of any element
    for (std::size_t i = first; i < fields.size() && long(list.size()) < std::min(count, most);
         ++i) {
        if (!whole(c, i, "a node", node, 0)) return;
        if (node != 0 || !iscard) list.push_back(node);
    }
    if (!iscard && (count < 1 || count > most || long(list.size()) < count))
        return report.error("element " + numbertext(number) + " has " +
                                numbertext(long(list.size())) + " nodes, " + numbertext(count) +
                                " were told",
                            c.line);
    putelement(c, number, list);
}

void cosmosreader::readac(const command& c) {
    if (!split(c)) return;
    const std::string kind = uppercase(field(0).substr(0, 3));
    long number = 0;
    if (!whole(c, 1, "the set", number, 1)) return;
    if (kind == "EG" || kind == "GR")
        active.group = number;
    else if (kind == "MP")
        active.material = number;
    else if (kind == "RC")
        active.constants = number;
    else if (kind == "CS" || kind == "ECS")
        active.system = number;
    else if (kind == "LC")
        active.loadcase = number;
    else if (kind != "TC" && !isagain)
        report.error(where(c) + "class " + shown(field(0)) + " is not known", c.line);
}

void cosmosreader::readegroup(const command& c) {
    long number = 0;
    if (split(c) && whole(c, 0, "the group", number, 1))
        groups.nameelements(number, uppercase(field(1).substr(0, 40)));
}

// group, set, first position, count, values
void cosmosreader::readrconst(const command& c) {
    const std::size_t values = 4;
    long group = 0, set = 0, first = 0, count = 0;
    if (!split(c) || !whole(c, 0, "the group", group, 1) || !whole(c, 1, "the set", set, 1) ||
        !whole(c, 2, "the position", first, 1) || !whole(c, 3, "the count", count, 0))
        return;
    double value = 0;
    for (std::size_t i = values; i < fields.size() && long(i - values) < count; ++i)
        if (real(c, i, "a constant", value))
            groups.setconstant(group, set, first + long(i - values), value);
    if (long(fields.size()) < count + long(values))
        report.error(where(c) + numbertext(count) + " constants were told, there are fewer",
                     c.line);
}

// set, name, value, name, value ...
void cosmosreader::readmprop(const command& c) {
    long set = 0;
    double value = 0;
    if (!split(c) || !whole(c, 0, "the set", set, 1)) return;
    for (std::size_t i = 1; i + 1 < fields.size(); i += 2) {
        const std::string name = uppercase(fields[i].substr(0, 20));
        if (name.empty() || !real(c, i + 1, name, value)) continue;
        if (!groups.setproperty(set, name, value))
            report.skipped("Material properties " + shown(name), c.line);
    }
}

// The nodes first .. last by step; numbers in between that are no nodes do not matter.
bool cosmosreader::numberednodes(const command& c, std::size_t lastfield, std::vector<int>& list) {
    long first = 0, last = 0, step = 1;
    if (!whole(c, 0, "the node", first, 0) || !whole(c, lastfield, "the last node", last, first) ||
        !whole(c, lastfield + 1, "the step", step, 1))
        return false;
    last = std::max(last, first);
    step = std::max(step, 1L);
    if ((last - first) / step < long(found.nodes.size())) {
        for (long n = first; n <= last; n += step)
            if (const int node = nodes.find(n); node > 0) list.push_back(node);
    } else
        for (std::size_t i = 0; i < found.nodes.size(); ++i)
            if (const long n = found.nodenumbers[i];
                n >= first && n <= last && (n - first) % step == 0)
                list.push_back(int(i) + 1);
    visited += std::min((last - first) / step + 1, long(found.nodes.size()));
    const long most = 20000000;
    if (visited > most) in.failat(c.line, "constraints and loads name more nodes than can be");
    if (list.empty())
        report.error("node " + numbertext(first) + (last > first ? " .. " + numbertext(last) : "") +
                         " is not defined",
                     c.line);
    return !list.empty();
}

// The freedoms that a label stands for; none where it is not known. Labels are taken as they stand.
std::vector<int> cosmosreader::freedoms(std::string_view label, const char* const (&labels)[7],
                                        bool ofloads) const {
    for (int dof = 1; dof <= 6; ++dof)
        if (label == labels[dof]) return {dof};
    if (ofloads) return {};
    static const std::map<std::string_view, std::vector<int>> more = {
        {"RX", {4}},       {"RY", {5}},      {"RZ", {6}}, {"ALL", {1, 2, 3, 4, 5, 6}},
        {"AU", {1, 2, 3}}, {"AR", {4, 5, 6}}};
    const auto at = more.find(label);
    return at == more.end() ? std::vector<int>{} : at->second;
}

// node, label, value, last node, step, further labels; the older cards have one field more before
// the last node.
bool cosmosreader::conditions(const command& c, const char* const (&labels)[7], bool ofloads,
                              std::size_t lastfield) {
    double value = 0;
    std::vector<int> list, dofs;
    if (!split(c)) return false;
    std::vector<std::string_view> told = {field(1)};
    for (std::size_t i = lastfield + 2; i < fields.size(); ++i)
        if (!fields[i].empty()) told.push_back(fields[i]);
    for (const std::string_view label : told) {
        const std::vector<int> more = freedoms(label, labels, ofloads);
        if (more.empty()) report.error("label " + shown(label) + " is not known", c.line);
        for (const int dof : more)
            if (std::ranges::find(dofs, dof) == dofs.end()) dofs.push_back(dof);
    }
    if (dofs.empty() || !real(c, 2, "the value", value) || !numberednodes(c, lastfield, list))
        return false;
    std::vector<importedrow>& rows = ofloads ? loadcase().nodal : found.constraints;
    for (const int node : list)
        for (const int dof : dofs) {
            const bool turned = !ofloads && dof > 3 && value != 0;  // degrees in the model
            rows.push_back({node, dof, turned ? value * 180 / pi : value});
            if (turned) report.changed("Prescribed rotations turned from radians to degrees");
        }
    report.read(ofloads ? "Nodal loads" : "Constraints", long(list.size() * dofs.size()));
    return true;
}

static std::size_t lastnodefield(std::string_view word) {
    return word.size() == 3 ? 3 : 4;
}

void cosmosreader::readdisp(const command& c) {
    conditions(c, displacementlabels, false, lastnodefield(c.word));
}

void cosmosreader::readforce(const command& c) {
    conditions(c, forcelabels, true, lastnodefield(c.word));
}

importedcase& cosmosreader::loadcase() {
    const auto [at, isnew] = cases.try_emplace(active.loadcase, found.cases.size());
    if (isnew) found.cases.emplace_back().name = "LC " + numbertext(active.loadcase);
    return found.cases[at->second];
}

// --- elements -----------------------------------------------------------------------------------

void cosmosreader::buildelement(const pendingelement& e) {
    std::array<int, 4> corners{};
    int count = e.count;
    for (int k = 0; k < count; ++k) {
        corners[std::size_t(k)] = nodes.find(e.nodes[std::size_t(k)]);
        if (corners[std::size_t(k)] == 0)
            return report.error("element " + numbertext(e.number) + ": node " +
                                    numbertext(e.nodes[std::size_t(k)]) + " is not defined",
                                e.line);
    }
    const int orienting = groups.arelines(e.sets.group) && count == 3 ? corners[2] : 0;
    if (orienting) corners[2] = 0, count = 2;
    if (count == 4 && corners[3] == corners[2]) corners[3] = 0, count = 3;
    for (int k = 0; k < count; ++k)
        for (int j = 0; j < k; ++j)
            if (corners[std::size_t(j)] == corners[std::size_t(k)])
                return report.error("element " + numbertext(e.number) + " has a node twice",
                                    e.line);
    const int type = groups.typeof(e.sets.group, count);
    const int item = found.addelement(type, corners, groups.groupof(e.sets));
    found.elementnumbers.push_back(e.number);
    report.read(count == 2 ? "Line elements" : count == 3 ? "Triangles" : "Quadrilaterals");
    if (orienting == 0 || type != typebeam) return;
    const triple &from = found.nodes[std::size_t(corners[0]) - 1],
                 &to = found.nodes[std::size_t(orienting) - 1];
    found.orientations.push_back({item, 2, {to[0] - from[0], to[1] - from[1], to[2] - from[2]}});
}

void cosmosreader::build() {
    if (found.nodes.empty() && elements.empty())
        throw runtimeerror{errtype, in.name() + ": this is no Cosmos model, no node stands in it"};
    found.isconsistent = true;
    report.read("Nodes", long(found.nodes.size()));
    for (const pendingelement& e : elements) buildelement(e);
    groups.tellunused();
}

void readcosmos(const std::string& path, imported& found, purposes purpose) {
    readcosmos(readwhole(path), path, found, purpose);
}

void readcosmos(std::string text, const std::string& name, imported& found, purposes purpose) {
    cosmosreader reader(std::move(text), name, found, purpose);
    reader.firstpass();
    reader.secondpass();
    reader.build();
}

bool iscosmostext(std::string_view head) {
    textlines in(std::string(head), "");
    std::string_view line;
    while (in.next(line)) {
        line = trimmed(line);
        if (isremark(line)) continue;
        return line[0] != '*' && !line.starts_with("NEW-PROB");
    }
    return true;
}
