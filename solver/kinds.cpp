// SPDX-License-Identifier: GPL-3.0-or-later
// The catalogue of element kinds.
#include "solver/kinds.h"

#include "solver/line.h"
#include "solver/membrane.h"
#include "solver/refuse.h"
#include "solver/shell.h"
#include "solver/spring.h"
#include "solver/surface.h"

static const auto unsure = stiffened::unsure, all = stiffened::all, flat = stiffened::translations;

static const elementkind kinds[] = {
    {typenone, "NONE", 0, family::none, 3, unsure, unsure, nullptr, nullptr, nullptr, nullptr,
     nullptr},
    {typetruss, "TRUSS", 2, family::line, 3, unsure, unsure, checktruss, stiffentruss, masstruss,
     spreadtruss, nullptr},
    {typememb3, "MEMB3", 3, family::plate, 3, unsure, flat, checkmembrane, stiffenmemb3,
     masssurface, spreadsurface, stressmemb3},
    {typememb4, "MEMB4", 4, family::plate, 3, unsure, flat, checkmembrane, stiffenmemb4,
     masssurface, spreadsurface, stressmemb4},
    {typemass, "MASS", 1, family::point, 6, unsure, unsure, checkmass, nullptr, masspoint, nullptr,
     nullptr},
    {typeshear4, "SHEAR4", 4, family::plate, 3, unsure, unsure, checkmembrane, stiffenshear,
     masssurface, spreadsurface, stressshear},
    {typebeam, "BEAM", 2, family::line, 6, all, all, checkbeam, stiffenbeam, massbeam, spreadbeam,
     nullptr},
    {typepipe, "PIPE", 2, family::line, 6, all, all, checkbeam, stiffenbeam, massbeam, spreadbeam,
     nullptr},
    {typeshell3, "SHELL3", 3, family::plate, 6, all, all, checkshell, stiffenshell, massshell,
     spreadshell, stressshell},
    {typeshell4, "SHELL4", 4, family::plate, 6, all, all, checkshell, stiffenshell, massshell,
     spreadshell, stressshell},
    {typeplate3, "PLATE3", 3, family::plate, 6, unsure, unsure, checkshell, stiffenplate, massshell,
     spreadshell, stressplate},
    {typeplate4, "PLATE4", 4, family::plate, 6, unsure, unsure, checkshell, stiffenplate, massshell,
     spreadshell, stressplate},
    {typespring2, "SPRING2", 2, family::link, 6, unsure, unsure, checkspring, stiffenspring,
     nullptr, nullptr, nullptr},
    {typerigid, "RIGID", 2, family::link, 6, unsure, unsure, nullptr, nullptr, nullptr, nullptr,
     nullptr},
    {typespringt, "SPRING-T", 1, family::point, 6, unsure, unsure, checkspring, stiffenspring,
     nullptr, nullptr, nullptr},
    {typespringr, "SPRING-R", 1, family::point, 6, unsure, unsure, checkspring, stiffenspring,
     nullptr, nullptr, nullptr},
    {typespring, "SPRING", 1, family::point, 6, unsure, unsure, checkspring, stiffenspring, nullptr,
     nullptr, nullptr},
};
static_assert(sizeof kinds / sizeof kinds[0] == lasttype + 1);

const elementkind& kindof(int type) {
    if (type < 0 || type > lasttype) throw subscripterror(type, lasttype);
    return kinds[type];
}
