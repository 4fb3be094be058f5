// SPDX-License-Identifier: GPL-3.0-or-later
// Tables by kind: where their rows come from and what stands in the columns. State: the choices of
// the session and the file that the dialog is open for.
#include "exchange/tables.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <optional>

#include "core/catalogue.h"
#include "core/csvout.h"
#include "core/journal.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/runtime.h"
#include "core/session.h"
#include "core/views.h"
#include "exchange/envelopecsv.h"
#include "exchange/gate.h"
#include "files/filop.h"
#include "files/saving.h"
#include "post/combinedstress.h"
#include "post/components.h"
#include "post/memberfile.h"
#include "post/plotunits.h"
#include "post/postproces.h"
#include "post/resultstream.h"
#include "post/stressfile.h"
#include "tools/numintpaste.h"

namespace {

enum class rowsof { nodes, supports, corners, ends, members, modes, sums, frequencies };

struct resulttable {
    const char *caption, *extension;
    resultkinds kind;
    rowsof rows;
    std::optional<envelopeof> envelope = {};  // that it has
};

const resulttable resulttables[] = {
    {"Displacements", ".rvp", resultkinds::displacements, rowsof::nodes, envelopeof::displacements},
    {"Reactions", ".KRT", resultkinds::forces, rowsof::supports, envelopeof::forces},
    {"Nodal forces", ".KRT", resultkinds::forces, rowsof::nodes},
    {"Stresses of plates, means at nodes, global axes", ".NSA", resultkinds::stresses,
     rowsof::corners},
    {"Stresses of plates, means at nodes, local axes", ".NLA", resultkinds::stresses,
     rowsof::corners},
    {"Stresses of plates, of each element, global axes", ".NSR", resultkinds::stresses,
     rowsof::corners},
    {"Stresses of plates, of each element, local axes", ".NSL", resultkinds::stresses,
     rowsof::corners, envelopeof::plates},
    {"Stresses of line elements", ".LES", resultkinds::linestresses, rowsof::ends},
    {"Forces along line elements", ".MEM", resultkinds::members, rowsof::members,
     envelopeof::members},
    {"Mode shapes", ".EIG", resultkinds::modes, rowsof::modes},
    {"Frequencies and masses of the modes", ".sum", resultkinds::modes, rowsof::frequencies},
    {"Sums of loads and reactions", ".sum", resultkinds::displacements, rowsof::sums},
};

const char* const freedoms[2][6] = {{"DX", "DY", "DZ", "RX", "RY", "RZ"},
                                    {"FX", "FY", "FZ", "MX", "MY", "MZ"}};

class tablewriter {
  public:
    tablewriter(csvout& target, const tablechoice& c, const resulttable& t)
        : out(target), choice(c), table(t) {}

    long write() {
        if (table.rows == rowsof::sums || table.rows == rowsof::frequencies) return writesummary();
        resultrows rows(modelname + table.extension, table.kind);
        source = &rows;
        choosenodes();
        heading();
        const int last = ismodes() ? rows.blocks() : choice.ofcases ? nlc() : ncomb();
        for (int b = 1; b <= last; ++b)
            if (choice.block == 0 || choice.block == b) writeblock(b);
        return written;
    }

  private:
    bool ismodes() const { return table.rows == rowsof::modes; }

    // --- rows of the large files ---

    void writeblock(int b) {
        name = ismodes() ? "Mode " + numbertext(b) : choice.ofcases ? lcname(b) : lcombname(b);
        block = b;
        source->begin(factorsof(b));
        resultrows::row row;
        for (long i = 1; source->next(row); ++i) {
            if (i % 16384 == 0 && !theplatform().progress("Writing " + name, source->share()))
                throw runtimeerror{errstopped, "The table was given up"};
            if (iswanted(row.item)) writerow(row);
        }
    }
    std::vector<float> factorsof(int b) const {
        std::vector<float> factors(std::size_t(source->blocks()), 0);
        for (int l = 1; l <= source->blocks(); ++l)
            if (ismodes() || choice.ofcases)
                factors[std::size_t(l) - 1] = l == b;
            else if (l <= modelsize(sizeloadcases))
                factors[std::size_t(l) - 1] = lcomb(b, l);
        if ((ismodes() || choice.ofcases) && b > source->blocks())
            throw runtimeerror{errsubscript, modelname + table.extension + " holds " +
                                                 numbertext(source->blocks()) +
                                                 " load cases; analyse again"};
        return factors;
    }
    // Of a group the nodes of its elements.
    void choosenodes() {
        const bool supports = table.rows == rowsof::supports;
        nodewanted.assign(std::size_t(nnodes()) + 1, !supports && choice.group == 0);
        if (supports)
            for (int i = 1; i <= ncon; ++i)
                if (connode(i) > 0) nodewanted[std::size_t(connode(i))] = true;
        nodewanted[0] = choice.group == 0 && table.kind == resultkinds::forces;
        if (choice.group == 0) return;
        std::vector<bool> ofgroup(nodewanted.size(), false);
        for (int e = 1; e <= nelems(); ++e)
            for (int k = 1; egroup(e) == choice.group && k <= nodesoftype(elems(e, 0)); ++k)
                ofgroup[std::size_t(elems(e, k))] = true;
        for (std::size_t n = 1; n < nodewanted.size(); ++n)
            nodewanted[n] = ofgroup[n] && (!supports || nodewanted[n]);
    }
    bool areelements() const {
        return table.rows == rowsof::corners || table.rows == rowsof::ends ||
               table.rows == rowsof::members;
    }
    bool iswanted(int item) {
        if (!areelements()) return nodewanted[std::size_t(item)];
        corner = item == former ? corner + 1 : 1;
        former = item;
        return choice.group == 0 || egroup(item) == choice.group;
    }

    void heading() {
        out.cell(ismodes() ? "Mode" : choice.ofcases ? "Load case" : "Combination");
        if (ismodes()) out.cell("Frequency [Hz]");
        if (areelements()) {
            out.cell("Element").cell("Group");
            out.cell(table.rows == rowsof::corners ? "Corner"
                     : table.rows == rowsof::ends  ? "End"
                                                   : "Station");
        }
        if (table.rows == rowsof::members) {
            out.cell("Place").cell(headedinput("Distance", "L"));
            for (const quantityrow& row : quantityrows) out.cell(headed(row.label, row.unit));
            return out.endrow();
        }
        out.cell("Node");
        for (const char* const one : {"X", "Y", "Z"}) out.cell(headedinput(one, "L"));
        if (areelements())
            for (const char* const one : stresssymbols) out.cell(headed(one, "F/L^2"));
        else
            for (const int dof : freedomsof(source->anadof()))
                out.cell(isturn(dof) ? std::string(freedoms[0][dof]) + " [degrees]"
                                     : headed(freedoms[isforces()][dof], formulaof(dof)));
        out.endrow();
    }
    const char* formulaof(int dof) const {
        if (isforces()) return dof < 3 ? "F" : "F.L";
        return ismodes() || dof >= 3 ? "" : "L";
    }
    bool isturn(int dof) const { return !isforces() && dof >= 3; }
    bool isforces() const { return table.kind == resultkinds::forces; }

    void begin() {
        out.cell(name);
        ++written;
    }
    void writerow(const resultrows::row& row) {
        if (table.rows == rowsof::members) return writemember(row);
        if (table.rows == rowsof::corners) return writestress(row, corner, 3);
        if (table.rows == rowsof::ends) {
            writestress(row, 1, 3);
            return writestress(row, 2, 3 + stressvalues);
        }
        begin();
        if (ismodes()) out.cell(float(frequencyof(source->modevalue(block))));
        putnode(row.item);
        const std::vector<int> dofs = freedomsof(source->anadof());
        for (std::size_t k = 0; k < row.values.size(); ++k)
            put(isturn(dofs[k]) ? todegrees(row.values[k]) : row.values[k]);
        out.endrow();
    }
    void putnode(int n) {
        if (n == 0) {
            out.cell("Total").cell("").cell("").cell("");
            return;
        }
        out.cell(n);
        for (int k = 0; k < 3; ++k) out.cell(nodes(0, n, k));
    }
    void put(double value) { out.cell(float(value) + 0.0F); }  // -0 is 0
    void putelement(int e, int place) {
        begin();
        out.cell(e).cell(groupname(egroup(e))).cell(place);
    }
    void writestress(const resultrows::row& row, int place, std::size_t first) {
        putelement(row.item, place);
        const int elnn = nodesoftype(elems(row.item, 0));
        putnode(int(elems(row.item, std::min(place, elnn))));
        const double factor = shownfactor("F/L^2");
        float s[stressvalues] = {};
        for (std::size_t k = 1; k < stressvalues; ++k) {
            s[k] = float(row.values[first + k - 1] * factor);
            put(s[k]);
        }
        put(combinedstressof(s));
        out.endrow();
    }
    void writemember(const resultrows::row& row) {
        const auto a = nodes.row(0, int(elems(row.item, 1))),
                   b = nodes.row(0, int(elems(row.item, 2)));
        const double length =
            std::hypot(double(b[0]) - a[0], double(b[1]) - a[1], double(b[2]) - a[2]);
        for (std::size_t i = 0; i < row.values.size(); i += 9) {
            putelement(row.item, int(i / 9) + 1);
            put(row.values[i]);
            put(row.values[i] * length);
            for (std::size_t k = 1; k < 9; ++k) put(row.values[i + k]);
            out.endrow();
        }
    }

    // --- the small tables of .sum ---

    long writesummary() {
        const std::string text = readwhole(findnocase(modelname + table.extension));
        const sheet s = readsheet(text, ',');
        const bool areloads = table.rows == rowsof::sums;
        for (const char* const one : areloads ? loadheading : modeheading)
            if (one) out.cell(headed(one, areloads ? formulaofsum(one) : ""));
        out.endrow();
        for (std::size_t r = 2; r < s.rows(); ++r) {
            const auto word = [&](std::size_t k) {
                return k < s.columns(r) ? std::string(s.cell(r, k)) : std::string();
            };
            if (word(0) == "case") {
                block = int(numberof(word(1)));
                name = word(2);
            } else if (word(0) == "mode") {
                if (areloads) break;
                if (choice.block == 0 || numberof(word(1)) == choice.block)
                    putwords({word(1), word(2), word(3), word(4), word(5), word(6)});
            } else if (areloads && (choice.block == 0 || block == choice.block)) {
                putsum(word);
            }
        }
        return written;
    }
    static constexpr const char* modeheading[11] = {
        "Mode",           "Omega^2", "Frequency [Hz]", "Share of mass X", "Share of mass Y",
        "Share of mass Z"};
    static constexpr const char* loadheading[11] = {"Load case", "Sum of", "FX", "FY",    "FZ",
                                                    "MX",        "MY",     "MZ", "Value", "Node"};

    static const char* formulaofsum(const std::string& heading) {
        return heading.size() != 2 ? "" : heading[0] == 'F' ? "F" : "F.L";
    }
    void putwords(const std::vector<std::string>& words) {
        for (const std::string& one : words)
            if (double value = 0; readnumber(one, value))
                out.cell(value);
            else
                out.cell(one);
        out.endrow();
        ++written;
    }
    void putsum(const std::function<std::string(std::size_t)>& word) {
        const std::string what = word(0);
        const bool isload = what == "load";
        if (isload || what == "applied" || what == "reactions" || what == "difference") {
            const std::size_t first = isload ? 2 : 1;
            putwords({name, isload ? "load: " + word(1) : what, word(first), word(first + 1),
                      word(first + 2), word(first + 3), word(first + 4), word(first + 5), "", ""});
        } else if (what == "warning") {
            putwords({name, "warning: " + word(1), "", "", "", "", "", "", "", ""});
        } else if (what == "rotation") {
            putwords({name, "rotation [degrees]", "", "", "", "", "", "",
                      numbertext(float(todegrees(numberof(word(1))))), word(2)});
        } else if (what != "warnings") {
            putwords({name, what, "", "", "", "", "", "", word(1), word(2)});
        }
    }

    csvout& out;
    const tablechoice& choice;
    const resulttable& table;
    resultrows* source = nullptr;
    std::vector<bool> nodewanted;
    std::string name;  // of the block
    int block = 0, former = 0, corner = 0;
    long written = 0;
};

}  // namespace

void writetable(const std::string& path, const tablechoice& choice, importreport& report) {
    const resulttable& table = resulttables[choice.table];
    csvout out(path, choice.separator, choice.decimalcomma);
    const long rows = choice.envelope && table.envelope
                          ? writeenvelope(out, *table.envelope, choice.group)
                          : tablewriter(out, choice, table).write();
    out.commit();
    report.read(std::string(table.caption) + ", rows", rows);
    if (isresultstale()) report.warn(staletext);
}

// --- the dialog ---------------------------------------------------------------------------------

static std::string target;
static tablechoice lastchoice;

static bool stands(const resulttable& table) {
    std::error_code ec;
    return isnamed() && std::filesystem::exists(findnocase(modelname + table.extension), ec);
}

void starttables(const std::string& path) {
    target = path;
    if (std::ranges::none_of(resulttables, stands))
        theplatform().message("There are no results beside the model; analyse it first.",
                              icons::exclamation);
    else
        theplatform().showdialog("resulttables");
}

void asktables() {
    filebox box;
    box.title = "Table of results";
    box.filter = "Table of results (*.csv)|*.csv|All Files (*.*)|*.*";
    box.saving = true;
    if (isnamed()) box.path = modelname + ".csv";
    const std::string path = asktarget(box, ".csv");
    if (!path.empty()) starttables(path);
}

static const struct {
    const char* caption;
    char separator;
    bool decimalcomma;
} separators[] = {{"Comma", ',', false},
                  {"Semicolon", ';', false},
                  {"Semicolon, and a decimal comma", ';', true},
                  {"Tab", '\t', false}};

tableform opentables() {
    tableform form;
    form.path = target;
    for (int t = 0; t < int(std::size(resulttables)); ++t) {
        if (!stands(resulttables[t])) continue;
        if (t == lastchoice.table) form.chosen = int(form.kinds.size());
        form.kinds.push_back(t);
        form.tables.emplace_back(resulttables[t].caption);
    }
    form.groups.emplace_back("All groups");
    for (int g = 1; g <= ngroups(); ++g) form.groups.push_back(groupname(g));
    for (const auto& s : separators) {
        if (s.separator == lastchoice.separator && s.decimalcomma == lastchoice.decimalcomma)
            form.separator = int(form.separators.size());
        form.separators.emplace_back(s.caption);
    }
    choosetable(form, form.chosen);
    return form;
}

// Modes there are in the results: the second number of their file.
static int countmodes() {
    int count = 0;
    guarded(
        [&] {
            resultstream in(findnocase(modelname + ".EIG"));
            in.number();
            count = std::max(0, in.whole());
        },
        [](const runtimeerror&) {});
    return std::min(count, 1000);
}

// All combinations, all load cases, then each of them; of modes and sums only what they have.
void choosetable(tableform& form, int entry) {
    if (entry < 0 || std::size_t(entry) >= form.kinds.size()) return;
    form.chosen = entry;
    const std::size_t before = form.blocks.size();
    form.blocks.clear();
    const rowsof rows = resulttables[form.kinds[std::size_t(entry)]].rows;
    const bool aremodes = rows == rowsof::modes || rows == rowsof::frequencies;
    if (aremodes) {
        form.blocks.emplace_back("All modes");
        for (int m = 1; m <= countmodes(); ++m) form.blocks.push_back("Mode " + numbertext(m));
    } else {
        if (rows != rowsof::sums) form.blocks.emplace_back("All combinations");
        form.blocks.emplace_back("All load cases");
        for (int c = 1; rows != rowsof::sums && c <= ncomb(); ++c)
            form.blocks.push_back("Combination " + numbertext(c) + ": " + lcombname(c));
        for (int lc = 1; lc <= nlc(); ++lc)
            form.blocks.push_back("Load case " + numbertext(lc) + ": " + lcname(lc));
        if (resulttables[form.kinds[std::size_t(entry)]].envelope)
            form.blocks.emplace_back("Envelope of the combinations");
    }
    if (form.blocks.size() != before) form.block = 0;
}

tablechoice tableform::choice() const {
    tablechoice c;
    c.table = kinds[std::size_t(chosen)];
    c.group = group;
    c.separator = separators.empty() ? ',' : ::separators[separator].separator;
    c.decimalcomma = !separators.empty() && ::separators[separator].decimalcomma;
    const rowsof rows = resulttables[c.table].rows;
    if (rows == rowsof::modes || rows == rowsof::frequencies) {
        c.block = block;
        return c;
    }
    c.envelope = resulttables[c.table].envelope && block + 1 == int(blocks.size());
    const int alls = rows == rowsof::sums ? 1 : 2, combinations = alls == 1 ? 0 : ncomb();
    c.ofcases = alls == 1 || block == 1 || block >= alls + combinations;
    if (block >= alls && !c.envelope) c.block = block - alls + 1 - (c.ofcases ? combinations : 0);
    return c;
}

void accepttables(const tableform& form) {
    if (form.kinds.empty()) return;
    lastchoice = form.choice();
    writeforeign(form.path, "Table of results", [](const std::string& path, importreport& report) {
        writetable(path, lastchoice, report);
    });
}
