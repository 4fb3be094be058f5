// SPDX-License-Identifier: GPL-3.0-or-later
// Materials and sections of a deck, and what they make of the fields of a group.
#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "exchange/deckcards.h"
#include "exchange/imported.h"

struct decksection {
    deckcard card;
    std::string set, part;        // whole name of its set; the part that it stands in
    std::vector<double> numbers;  // of the first data line
    std::vector<double> direction;
};

class deckmaterials {
  public:
    void begin(const deckcard& card);
    void readelastic(const deckcard& card, deckcards& cards, importreport& report);
    void readdensity(deckcards& cards);
    // Into a group whose fields hold the section's shape already.
    void use(const decksection& s, std::array<double, groupfields + 1>& fields,
             importreport& report) const;

  private:
    struct material {
        double modulus = nottold, poisson = nottold, density = nottold;
        double shear1 = nottold, shear2 = nottold;  // across, where they stand on their own
    };
    static void usetorsion(const material& m, std::array<double, groupfields + 1>& fields);
    std::map<std::string, material> materials;  // by names in capitals
    std::string current;
};

// Thickness, mass, stiffness of a spring, or the section of a beam.
void useshape(const decksection& s, importedgroup& group, importreport& report);
