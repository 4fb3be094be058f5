// SPDX-License-Identifier: GPL-3.0-or-later
// Load combinations from a table of factors and a rule, written as the model's own combinations.
#pragma once

#include <string>
#include <vector>

enum class caseroles { permanent, variable, unused };
// Permanent actions count most or least, all of them alike; variable ones most, and most times
// companion where another one leads.
struct casefactors {
    caseroles role = caseroles::variable;
    double most = 1.5, least = 0, companion = 0.7;
};
enum class combinationrules {
    leading,  // each variable action leads once, with the permanent ones at most and at least
    signs,    // every pattern of signs of the variable actions
};

struct ruleform {
    combinationrules rule = combinationrules::leading;
    std::vector<casefactors> cases;  // load case lc at lc - 1
    int limit = 0;                   // of the combinations that may be written
    std::string message;
};

struct rulecombination {
    std::string name;
    std::vector<float> factors;
};

// The table as the model keeps it; new cases: the first permanent, others variable.
ruleform openrules();
// What the rule gives, each once. No more than one beyond what the sizes have room for.
std::vector<rulecombination> combinationsof(const ruleform& form);
int roomforcombinations();  // that the declared sizes have
// In place of the model's combinations, and keeps the table. False, with a message and nothing
// changed, where they are more than the limit or none.
bool writerules(ruleform& form);

extern const char* const rulessection;
class textin;
void checkrules(textin& in);  // throws for what it can not take
