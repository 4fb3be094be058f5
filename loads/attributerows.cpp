// SPDX-License-Identifier: GPL-3.0-or-later
// Rewriting of the rows of constraints, nodal loads and element loads.
#include "loads/attributerows.h"

#include <algorithm>
#include <cmath>

#include "core/model.h"
#include "core/modelsize.h"
#include "core/runtime.h"
#include "core/units.h"

namespace {
struct rowvalue {
    int field;
    float value;
};

// The three lists seen alike.
struct constraintrows {
    static constexpr const char* name = "constraints";
    int count() const { return ncon; }
    void setcount(int n) const { ncon = n; }
    int item(int i) const { return connode(i); }
    void makehole(int i) const { connode(i) = 0; }
    void set(int i, int item, rowvalue v) const {
        connode(i) = item;
        condof(i) = v.field;
        conval(i) = v.value;
    }
};

struct loadrows {
    static constexpr const char* name = "nodal loads";
    int lc;
    int count() const { return loadnode(lc, 0); }
    void setcount(int n) const { loadnode(lc, 0) = n; }
    int item(int i) const { return loadnode(lc, i); }
    void makehole(int i) const { loadnode(lc, i) = 0; }
    void set(int i, int item, rowvalue v) const {
        loadnode(lc, i) = item;
        loaddof(lc, i) = v.field;
        loadval(lc, i) = v.value;
    }
};

struct elementrows {
    static constexpr const char* name = "element loads";
    int lc;
    int count() const { return int(elemload(lc, 0, 0)); }
    void setcount(int n) const { elemload(lc, 0, 0) = float(n); }
    int item(int i) const { return int(elemload(lc, i, 0)); }
    void makehole(int i) const { elemload(lc, i, 0) = 0; }
    void set(int i, int item, rowvalue v) const {
        elemload(lc, i, 0) = float(item);
        elemload(lc, i, 1) = float(v.field);
        elemload(lc, i, 2) = v.value;
    }
};

enum class leftovers { makeholes, stay };
}  // namespace

static bool isempty(const std::string& text) {
    return text.find_first_not_of(" \t") == text.npos;
}

static std::string faultof(const fieldtext& field) {
    const std::string fault = hasunit(field.text) ? valuefault(field.text, field.formula)
                                                  : field.text + ": a number was expected";
    return field.caption + " " + fault + "; nothing was changed";
}

std::string faultofunits(const fieldtexts& fields) {
    double number = 0;
    for (const fieldtext& field : fields)
        if (hasunit(field.text) && !readvalue(field.text, field.formula, number))
            return faultof(field);
    return {};
}

// The filled fields; throws at the first that holds no Single. values then holds those before it.
static void readfields(const fieldtexts& fields, std::vector<rowvalue>& values) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const auto& [caption, text, formula] = fields[i];
        if (isempty(text)) continue;
        double number = 0;
        const std::string found = caption + " " + text + ": ";
        if (!readvalue(text, formula, number)) throw runtimeerror{errtype, faultof(fields[i])};
        if (!std::isfinite(float(number)))
            throw runtimeerror{erroverflow, found + "too large for a value; nothing was changed"};
        values.push_back({int(i) + 1, float(number)});
    }
}

static runtimeerror toomanyrows(const char* list, long needed) {
    return {errsubscript,
            "The " + std::string(list) + " need " + std::to_string(needed) + " rows, " +
                std::to_string(modelsize(sizeconditions)) +
                " are declared; nothing was changed. Increase 'Boundary Condition per loadcase' "
                "with [File,Model size..]"};
}

template <typename Rows>
static void rewrite(const Rows& rows, int highest, const std::vector<int>& items,
                    const std::vector<rowvalue>& values, leftovers rest) {
    const int most = int(values.size()), absent = -1;
    std::vector<int> used(std::size_t(highest) + 1, absent);  // values that an item's rows took
    const auto ofitem = [&](int n) -> int* {
        return n >= 1 && n <= highest ? &used[std::size_t(n)] : nullptr;
    };
    long missing = 0;
    for (const int n : items)
        if (int* const u = ofitem(n); u && *u == absent) {
            *u = 0;
            missing += most;
        }
    const int count = rows.count();
    for (int i = 1; i <= count; ++i)
        if (int* const u = ofitem(rows.item(i)); u && *u != absent && *u < most) {
            ++*u;
            --missing;
        }
    if (!growfor({{sizeconditions, count + missing}}))
        throw toomanyrows(Rows::name, count + missing);

    for (const int n : items)
        if (int* const u = ofitem(n)) *u = 0;
    for (int i = 1; i <= count; ++i) {
        const int n = rows.item(i);
        int* const u = ofitem(n);
        if (u == nullptr || *u == absent) continue;
        if (*u < most)
            rows.set(i, n, values[std::size_t((*u)++)]);
        else if (rest == leftovers::makeholes)
            rows.makehole(i);
    }
    int last = count;
    for (const int n : items)
        if (int* const u = ofitem(n))
            while (*u < most) rows.set(++last, n, values[std::size_t((*u)++)]);
    rows.setcount(last);
}

void rewriteconstraints(const std::vector<int>& items, const fieldtexts& fields) {
    std::vector<rowvalue> values;
    readfields(fields, values);
    rewrite(constraintrows{}, nnodes(), items, values, leftovers::makeholes);
}

void rewritenodalloads(int lc, const std::vector<int>& items, const fieldtexts& fields) {
    std::vector<rowvalue> values;
    readfields(fields, values);
    const int before = loadnode(lc, 0);
    rewrite(loadrows{lc}, nnodes(), items, values, leftovers::makeholes);
    if (nlc() == 0 && loadnode(lc, 0) > before) loadnode(0, 0) = 1;
}

void rewriteelementloads(int lc, const std::vector<int>& items, const fieldtexts& fields) {
    std::vector<rowvalue> values;
    const bool whole = guarded([&] { readfields(fields, values); },
                               [](const runtimeerror& e) {
                                   if (e.number != errtype) throw e;
                               });
    rewrite(elementrows{lc}, nelems(), items, values,
            whole ? leftovers::makeholes : leftovers::stay);
}
