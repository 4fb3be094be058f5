// SPDX-License-Identifier: GPL-3.0-or-later
// The table of what the kinds can do.
#include "solver/elements/kinds.h"

#include "solver/base/refuse.h"
#include "solver/elements/line.h"
#include "solver/elements/membrane.h"
#include "solver/elements/shell.h"
#include "solver/elements/spring.h"
#include "solver/elements/surface.h"

static constexpr elementkind kinds[] = {
    {catalogue[typenone], nullptr, nullptr, nullptr, nullptr, nullptr},
    {catalogue[typetruss], checktruss, stiffentruss, masstruss, spreadtruss, nullptr},
    {catalogue[typememb3], checkmembrane, stiffenmemb3, masssurface, spreadsurface, stressmemb3},
    {catalogue[typememb4], checkmembrane, stiffenmemb4, masssurface, spreadsurface, stressmemb4},
    {catalogue[typemass], checkmass, nullptr, masspoint, nullptr, nullptr},
    {catalogue[typeshear4], checkmembrane, stiffenshear, masssurface, spreadsurface, stressshear},
    {catalogue[typebeam], checkbeam, stiffenbeam, massbeam, spreadbeam, nullptr},
    {catalogue[typepipe], checkbeam, stiffenbeam, massbeam, spreadbeam, nullptr},
    {catalogue[typeshell3], checkshell, stiffenshell, massshell, spreadshell, stressshell},
    {catalogue[typeshell4], checkshell, stiffenshell, massshell, spreadshell, stressshell},
    {catalogue[typeplate3], checkshell, stiffenplate, massshell, spreadshell, stressplate},
    {catalogue[typeplate4], checkshell, stiffenplate, massshell, spreadshell, stressplate},
    {catalogue[typespring2], checkspring, stiffenspring, nullptr, nullptr, nullptr},
    {catalogue[typerigid], nullptr, nullptr, nullptr, nullptr, nullptr},
    {catalogue[typespringt], checkspring, stiffenspring, nullptr, nullptr, nullptr},
    {catalogue[typespringr], checkspring, stiffenspring, nullptr, nullptr, nullptr},
    {catalogue[typespring], checkspring, stiffenspring, nullptr, nullptr, nullptr},
};
static_assert(sizeof kinds / sizeof kinds[0] == lasttype + 1);

const elementkind& kindof(int type) {
    if (type < 0 || type > lasttype) throw subscripterror(type, lasttype);
    return kinds[type];
}
