// SPDX-License-Identifier: GPL-3.0-or-later
// Values of the model and the session by the names that scripts use.
#include <functional>
#include <map>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "core/catalogue.h"
#include "core/colours.h"
#include "core/journal.h"
#include "core/labels.h"
#include "core/model.h"
#include "core/modeltable.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/views.h"
#include "post/contour.h"
#include "post/legendlook.h"
#include "post/postproces.h"
#include "post/shapes.h"
#include "post/stressfile.h"
#include "tools/circle.h"
#include "tools/genmesh.h"
#include "tools/groups.h"
#include "tools/intersect.h"
#include "tools/mesh2d.h"
#include "tools/placenodes.h"
#include "tools/sectionfile.h"
#include "tools/sections.h"
#include "ui/qtplatform.h"
#include "ui/script.h"
#include "view/scaleview.h"

using valuegetter = std::function<std::string(const std::vector<long>&)>;

template <typename T>
static std::string textof(const T& value) {
    if constexpr (std::is_same_v<T, std::string>)
        return value;
    else if constexpr (std::is_same_v<T, Flag>)
        return value ? "-1" : "0";
    else if constexpr (std::is_same_v<T, menustate>)
        return value.checked ? "-1" : "0";
    else if constexpr (std::is_same_v<T, bool>)
        return value ? "-1" : "0";
    else if constexpr (std::is_same_v<T, Integer> || std::is_same_v<T, int>)
        return numbertext(long(int(value)));
    else
        return numbertext(value);
}

static void needindices(const std::vector<long>& at, std::size_t count) {
    if (at.size() != count)
        throw runtimeerror{errsubscript, std::to_string(count) + " index(es) are needed"};
}

template <typename T>
static valuegetter valueof(const array1<T>& list) {
    return [&list](const std::vector<long>& at) {
        needindices(at, 1);
        return textof(list(at[0]));
    };
}

template <typename T>
static valuegetter valueof(const array2<T>& list) {
    return [&list](const std::vector<long>& at) {
        needindices(at, 2);
        return textof(list(at[0], at[1]));
    };
}

template <typename T>
static valuegetter valueof(const array3<T>& list) {
    return [&list](const std::vector<long>& at) {
        needindices(at, 3);
        return textof(list(at[0], at[1], at[2]));
    };
}

template <typename T>
static valuegetter valueof(const T& scalar) {
    return [&scalar](const std::vector<long>&) { return textof(scalar); };
}

static valuegetter computed(std::function<std::string()> value) {
    return [value](const std::vector<long>&) { return value(); };
}

static std::string nextof(const std::vector<std::string>& steps) {
    return steps.empty() ? "" : steps.front();
}

#define NAMED(name) \
    { #name, valueof(name) }

using valuetable = std::map<std::string, valuegetter>;

// What the table of the model tells by itself.
static void addmodel(valuetable& table) {
    const auto add = [&](const char* name, const auto& pointer) {
        std::visit([&](const auto* p) { table[name] = valueof(*p); }, pointer);
    };
    for (const modelarray& row : modelarrays()) add(row.name, row.cells);
    for (const modelscalar& row : modelscalars()) add(row.name, row.value);
}

static void addcounts(valuetable& table) {
    table.insert({
        NAMED(modelsize),
        {"nnodes", computed([] { return numbertext(nnodes()); })},
        {"nelems", computed([] { return numbertext(nelems()); })},
        {"ngroups", computed([] { return numbertext(ngroups()); })},
        {"ngraphics", computed([] { return numbertext(ngraphics()); })},
        {"nlc", computed([] { return numbertext(nlc()); })},
        {"ncomb", computed([] { return numbertext(ncomb()); })},
        {"npatches", computed([] { return numbertext(int(patches(0, 0, 0))); })},
    });
}

static void addcatalogue(valuetable& table) {
    table.insert({
        NAMED(eltypname),
        NAMED(eltypnodes),
        NAMED(eltypdes),
        NAMED(lckindname),
        NAMED(lcsubname),
    });
}

static void addtools(valuetable& table) {
    table.insert({
        NAMED(mesheltype),
        NAMED(meshtype),
        NAMED(meshok),
        NAMED(edgeno),
        NAMED(edgepending),
        NAMED(meshmode),
        NAMED(curgraph),
        NAMED(circleradius),
        NAMED(circleangle),
        NAMED(extendmode),
        {"snapon", computed([] { return std::string(MnuSelectItem(5).checked ? "-1" : "0"); })},
        NAMED(sectscale),
        {"sectcount", computed([] { return numbertext(sectcount); })},
    });
}

static void addsession(valuetable& table) {
    table.insert({
        NAMED(apptitle),
        NAMED(modelname),
        NAMED(previousname),
        NAMED(appdir),
        NAMED(promptaction),
        NAMED(promptitem),
        NAMED(promptgoal),
        NAMED(prompttail),
        NAMED(nodetol),
        NAMED(mergetol),
        NAMED(dim2d),
        NAMED(clearmem),
        NAMED(dorenumber),
        NAMED(dostiffness),
        NAMED(dosolve),
        NAMED(doeigen),
        NAMED(dolinestress),
        NAMED(dofestress),
        NAMED(elemmassflag),
        NAMED(automergenodes),
        NAMED(automergeelems),
        NAMED(renumbersave),
        NAMED(stressglobal),
        {"stepback", computed([] { return nextof(stepsback(1)); })},
        {"stepforward", computed([] { return nextof(stepsforward(1)); })},
        {"resultstale", computed([] { return std::string(isstaleshown() ? "-1" : "0"); })},
        {"statusline", computed([] { return statusline(); })},
        {"message", computed([] { return theqtplatform().lastmessage; })},
        {"title", computed([] { return theqtplatform().title; })},
    });
}

static void addmodes(valuetable& table) {
    table.insert({
        NAMED(addnodemode),
        NAMED(addelemmode),
        NAMED(drawline),
        NAMED(drawcircle),
        NAMED(drawcurve),
        NAMED(editconstraint),
        NAMED(editnodalload),
        NAMED(editelemload),
        NAMED(zoomwinmode),
        NAMED(viewselpending),
        NAMED(postselpending),
        NAMED(windowdrag),
        NAMED(movepending),
        NAMED(editing),
        NAMED(singleel),
        NAMED(ptcount),
        {"drawlinemode", valueof(drawline)},
        {"drawcirclemode", valueof(drawcircle)},
        {"drawcurvemode", valueof(drawcurve)},
    });
}

static void addmenus(valuetable& table) {
    table.insert({
        NAMED(MnuSelectItem),
        NAMED(Mnuadditem),
        NAMED(mnuSettingsItem),
        NAMED(mnudrawlist),
        NAMED(viewloads),
        NAMED(Nodelabeltype),
        NAMED(elemlabeltype),
        NAMED(menupostItem),
    });
}

static void addcolours(valuetable& table) {
    table.insert({
        NAMED(linecolor),      NAMED(backcolor), NAMED(meshcolor), NAMED(nodecolor),
        NAMED(patchcolor),     NAMED(selcolor),  NAMED(freecolor), NAMED(graphcolor),
        NAMED(concolor),       NAMED(rotcolor),  NAMED(loadcolor), NAMED(momcolor),
        NAMED(edgecolor),      NAMED(defcolor),  NAMED(hidcolor),  NAMED(nodelabelcolor),
        NAMED(elemlabelcolor), NAMED(drawcolor), NAMED(labelsize),
    });
}

static void addviews(valuetable& table) {
    table.insert({
        NAMED(viewptx),    NAMED(viewpty),    NAMED(viewptz),    NAMED(viewvert),
        NAMED(viewhor),    NAMED(viewscale),  NAMED(viewdist),   NAMED(viewaw),
        NAMED(viewdepth),  NAMED(viewgroup),  NAMED(viewtype),   NAMED(viewselnum),
        NAMED(dispscale),  NAMED(singleview), NAMED(vieww),      NAMED(toprinter),
        NAMED(viewh),      NAMED(scalex),     NAMED(scaley),     NAMED(activeview),
        NAMED(unitveclen), NAMED(sidebarw),   NAMED(sidebargap), NAMED(curx),
        NAMED(cury),       NAMED(curz),       NAMED(scrx),       NAMED(scry),
        NAMED(perspw),     NAMED(modelx),     NAMED(modely),     NAMED(modelz),
    });
}

static void addresults(valuetable& table) {
    table.insert({
        NAMED(modevalue),
        NAMED(modecount),
        NAMED(stresscomp),
        NAMED(stressaverage),
        NAMED(contourdata),
        NAMED(dispcontour),
        NAMED(contourfilled),
        {"autoscale", valueof(indexautoscale)},
        NAMED(scalemax),
        NAMED(scalemin),
        NAMED(indexmax),
        NAMED(indexmin),
        NAMED(indexcolor),
        NAMED(postset),
        NAMED(postgroup),
        NAMED(postcount),
        {"legendpalette",
         computed([] { return std::string(palettes()[std::size_t(lookoflegend().palette)].name); })},
        {"legendbands", computed([] { return numbertext(lookoflegend().bands); })},
        NAMED(markextremes),
        NAMED(valueatpointer),
        {"slabel3", computed(plottext)},
        {"modetext", computed(modetext)},
    });
}

static valuetable filltable() {
    valuetable table;
    for (const auto add : {addmodel, addcounts, addcatalogue, addtools, addsession, addmodes,
                           addmenus, addcolours, addviews, addresults})
        add(table);
    return table;
}

static const valuetable& values() {
    static const valuetable table = filltable();
    return table;
}

#undef NAMED

QStringList scriptvaluenames() {
    QStringList names;
    for (const auto& [name, getter] : values()) names << QString::fromStdString(name);
    return names;
}

static bool splitname(const QString& name, std::string& head, std::vector<long>& at) {
    const qsizetype open = name.indexOf('(');
    head = name.left(open).trimmed().toStdString();
    if (open < 0) return true;
    if (!name.endsWith(')')) return false;
    for (const QString& part : name.mid(open + 1, name.size() - open - 2).split(',')) {
        bool good = false;
        at.push_back(part.trimmed().toLong(&good));
        if (!good) return false;
    }
    return true;
}

bool scriptvalue(const QString& name, QString& value) {
    std::string head;
    std::vector<long> at;
    if (!splitname(name, head, at)) return false;
    const auto found = values().find(head);
    if (found == values().end()) return false;
    guarded([&] { value = QString::fromStdString(found->second(at)); },
            [&](const runtimeerror& e) { value = QString::fromStdString(e.what); });
    return true;
}
