// SPDX-License-Identifier: GPL-3.0-or-later
// The evaluator: one pass over the text, nothing is copied.
#include "tools/bereken.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "core/numtext.h"
#include "core/platform.h"
#include "core/trimmed.h"

int objvarcount;
array1<std::string> objvarname, objvarvalue, objvartext;

static const int mostterms = 20, mostfactors = 20;
static const int mostnested = 10000;  // values of variables within one expression
static faultlist* taker;

void allocobjvars(int count) {
    objvarcount = 0;
    for (auto* list : {&objvarname, &objvarvalue, &objvartext}) list->alloc(count);
    objvarcount = count;
}

faultlist::faultlist() : before(taker) {
    taker = this;
}

faultlist::~faultlist() {
    taker = before;
}

static void tell(const std::string& fault) {
    if (taker != nullptr)
        taker->texts.push_back(fault);
    else
        theplatform().message(fault, icons::exclamation);
}

// --- variables ----------------------------------------------------------------------------------

static int findvariable(std::string_view name) {
    for (int i = objvarcount; i >= 1; --i)
        if (objvarname(i) == name) return i;
    return 0;
}

std::string vervang(std::string_view name) {
    const int i = findvariable(name);
    return i == 0 ? std::string() : objvarvalue(i);
}

// --- factors ------------------------------------------------------------------------------------

namespace {
struct nesting {
    int depth = 0;
    int left = mostnested;
};
}  // namespace

static double evaluate(std::string_view text, nesting& nested);

static bool isnumber(std::string_view text, double& value) {
    const char* const last = text.data() + text.size();
    const bool plain = !text.empty() && text[0] >= '0' && text[0] <= '9';
    if (plain) {
        const auto [end, fault] = std::from_chars(text.data(), last, value);
        if (end == last && fault == std::errc()) return true;
    }
    return readnumber(text, value);
}

// A variable whose value is an expression is worked out each time; one that comes back to itself
// is told.
static double valueof(int i, nesting& nested) {
    const std::string& text = objvarvalue(i);
    double value = 0;
    if (isnumber(text, value)) return value;
    const int deepest = 400;  // frames of the stack
    if (nested.left < 0) return 0;
    if (nested.depth >= std::min(objvarcount, deepest) || nested.left-- == 0) {
        tell("Object variable " + objvarname(i) + " leads back to itself, or too far");
        nested.left = -1;  // one message tells it
        return 0;
    }
    ++nested.depth;
    value = evaluate(text, nested);
    --nested.depth;
    return value;
}

static double factorof(std::string_view text, nesting& nested) {
    double value = 0;
    if (isnumber(text, value)) return value;
    text = trimmed(text);
    if (text.empty()) return 0;
    if (const int i = findvariable(text); i != 0) return valueof(i, nested);
    const bool issigned = text[0] == '-' || text[0] == '+';
    if (issigned)
        if (const int i = findvariable(text.substr(1)); i != 0)
            return text[0] == '-' ? -valueof(i, nested) : valueof(i, nested);
    const char* end = nullptr;
    const bool large =
        scannumber(text.data(), text.data() + text.size(), value, end) == numberfault::toolarge &&
        end == text.data() + text.size();
    tell(large ? "Number too large: " + std::string(text)
               : "Object variable " + std::string(text) + " not defined");
    return 0;
}

// --- terms --------------------------------------------------------------------------------------

static double combined(double so, char operation, double factor, std::string_view text) {
    const auto fault = [text](const char* what) { tell(what + std::string(text)); };
    if (operation == '*') so *= factor;
    if (operation == '^') so = std::pow(so, factor);
    if (operation == '/') {
        if (factor == 0) {
            fault("Division by zero in ");
            return so;
        }
        so /= factor;
    }
    if (std::isfinite(so)) return so;
    fault(std::isnan(so) ? "Root of a negative number in " : "Number too large in ");
    return 0;
}

[[noreturn]] static void toomany(const char* what, int most, std::string_view text) {
    throw runtimeerror{errsubscript, "the expression " + std::string(text) + " has more than " +
                                         numbertext(most) + what};
}

// A sign begins a term but behind "*", "/" and "E".
static bool beginsterm(const char* at, const char* first) {
    if (*at != '+' && *at != '-') return false;
    return at == first || (at[-1] != '*' && at[-1] != '/' && at[-1] != 'E');
}

static bool isoperator(char c) {
    return c == '^' || c == '/' || c == '*';
}

static double evaluate(std::string_view text, nesting& nested) {
    const char* const first = text.data();
    const char* const last = first + text.size();
    double sum = 0;
    int terms = 0;
    for (const char* at = first; at != last;) {
        if (++terms > mostterms) toomany(" terms", mostterms, text);
        const bool minus = *at == '-';
        if (minus || *at == '+') ++at;  // the first term may have none
        double value = 0;
        char operation = 0;
        int factors = 0;
        const bool empty = at == last || beginsterm(at, first);
        while (!empty) {
            const char* const begin = at;
            while (at != last && !isoperator(*at) && (at == first || !beginsterm(at, first))) ++at;
            if (++factors > mostfactors) toomany(" factors in a term", mostfactors, text);
            const double factor =
                factorof(std::string_view(begin, std::size_t(at - begin)), nested);
            value = operation == 0 ? factor : combined(value, operation, factor, text);
            if (at == last || !isoperator(*at)) break;
            operation = *at++;
        }
        sum += minus ? -value : value;
    }
    if (std::isfinite(sum)) return sum;
    tell("Number too large in " + std::string(text));
    return 0;
}

double bereken(std::string_view text) {
    nesting nested;
    return evaluate(text, nested);
}
