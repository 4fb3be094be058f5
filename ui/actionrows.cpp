// SPDX-License-Identifier: GPL-3.0-or-later
// The rows of the table of actions.
#include "ui/actionrows.h"

#include <QClipboard>
#include <QGuiApplication>

#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "edit/Edit.h"
#include "edit/Mouseprocedures.h"
#include "edit/move.h"
#include "edit/refine.h"
#include "edit/selection.h"
#include "edit/undo.h"
#include "exchange/pictures.h"
#include "exchange/tables.h"
#include "files/filemenu.h"
#include "files/filop.h"
#include "files/saving.h"
#include "files/settings.h"
#include "loads/nodeattributes.h"
#include "post/printdraw.h"
#include "tools/drafttools.h"
#include "tools/findpatch.h"
#include "tools/intersect.h"
#include "tools/placenodes.h"
#include "tools/pointentry.h"
#include "ui/actionkinds.h"
#include "ui/demonstration.h"
#include "ui/dialogs.h"
#include "ui/helpwindow.h"
#include "ui/mainwindow.h"
#include "ui/printing.h"
#include "ui/record.h"
#include "ui/recordplay.h"
#include "ui/resultactions.h"
#include "ui/steps.h"
#include "ui/viewactions.h"
#include "ui/viewwidget.h"
#include "view/moddraw.h"
#include "view/setviews.h"

// --- what rows run, where it is more than a call ------------------------------------------------

static void togglescrollbars() {
    mnuSettingsItem(scrollbarson).checked = !mnuSettingsItem(scrollbarson).checked;
    arrangeviews();  // the views give them room
    redrawall();
}

static void toggleselect(int i) {
    if (i == selectsnap) {
        MnuSelectItem(selectsnap).checked = !MnuSelectItem(selectsnap).checked;
        labelselect();
    } else {
        setselectitem(i);
        theplatform().refresh();  // the item that was on already stays on
    }
}

// The mode "Free Node": each press or command point adds a node.
static void startaddnode() {
    startmode(addnodemode);
    checkonly(Mnuadditem, freenodeitem);
    mnuEditItem(undoitem).enabled = false;
    prompt("Add", "", "", "<Left Button> or <Command> to add, <ESC> to stop");
}

static command addingdialog(const char* name) {
    return [name] {
        addready();
        mnuEditItem(undoitem).enabled = false;
        theplatform().showdialog(name);
    };
}

static command attributes(attributemodes mode) {
    return [mode] { startattributes(mode); };
}

// Saves under the model's name, or asks for one.
static void savenow() {
    if (isnamed() ? savemodel() : menusave() == reply::done) addrecentfile();
}

static void saveas() {
    if (menusave() == reply::done) addrecentfile();
}

static const char* const locked = "Not while an analysis runs";
static const char* const noelements = "No element is selected";

static bool isattributable() {
    return !isheld() && (nodesel(0) != 0 || elemsel(0) != 0);
}

static bool iselementselected() {
    return !isheld() && elemsel(0) != 0;
}

static bool isgraphicselected() {
    return !isheld() && graphsel(0, 0) != 0;
}

// --- kinds of rows ------------------------------------------------------------------------------

static action selectrow(int i, const char* caption, const char* icon,
                        std::vector<actionplace> places) {
    action row = mark(
        "MnuSelectItem", i, caption, MnuSelectItem, i, [i] { toggleselect(i); }, icon);
    row.enabled = enabledof(MnuSelectItem, i);
    row.why = "The mode that runs picks other items; ESC ends it";
    row.places = std::move(places);
    return row;
}

// An item of the Add menu with the state that is told for it.
static action addrow(int i, const char* caption, const char* icon, command run,
                     std::vector<actionplace> places = {}) {
    action row;
    row.name = "Mnuadditem(" + std::to_string(i) + ")";
    row.caption = caption;
    row.icon = icon;
    row.run = std::move(run);
    row.places = std::move(places);
    row.checked = checkof(Mnuadditem, i);
    row.enabled = enabledof(Mnuadditem, i);
    row.why = "Not in the mode that runs; ESC ends it";
    return row;
}

static action drawrow(int i, const char* caption, const char* icon, graphickinds kind,
                      const Flag& flag, std::vector<actionplace> places) {
    action row;
    row.name = "Mnugraphicitem(" + std::to_string(i) + ")";
    row.caption = caption;
    row.icon = icon;
    row.run = [kind] { startdrawing(kind); };
    row.checked = [&flag] { return bool(flag); };
    row.places = std::move(places);
    return row;
}

static command connectrow(connectmodes mode) {
    return [mode] { connectgraphics(mode); };
}

static action steprow(const char* name, const char* caption, const char* keys, int order,
                      bool back) {
    action row;
    row.name = name;
    row.caption = caption;
    row.icon = name;
    row.keys = keys;
    row.run = [back] { stepby(1, back); };
    row.places = {{"editbar", order, back ? "stepbackbutton" : "stepforwardbutton"}};
    row.enabled = [back] { return isfree() && !stepnames(back).empty(); };
    row.why = back ? "Nothing was done yet" : "Nothing was taken back";
    row.list = [back] { return stepnames(back); };
    row.runlisted = [back](int count) { stepby(count, back); };
    return row;
}

// --- the rows -----------------------------------------------------------------------------------

static void addfile(actionrows& t) {
    addto(
        t, "&File", "files",
        {
            {"mnuFileItem(0)", "&New", "new", "Ctrl+N", [] { menunew(); }, {{"filebar", 1}}},
            {"mnuFileItem(1)", "&Open...", "open", "Ctrl+O", [] { menuopen(); }, {{"filebar", 2}}},
            {"mnuFileItem(2)", "&Import model...", "import", "", [] { menuimport(); }},
            {"mnuFileItem(3)", "Save &As...", "saveas", "Ctrl+Shift+S", saveas},
            {"mnuFileItem(4)",
             "&Print",
             "print",
             "Ctrl+P",
             menuprint,
             {{"filebar", 4, "printbutton"}}},
            {"mnuFileItem(5)"},
            {"mnuFileItem(6)", "Save Settings", "savesettings", "", savesettings},
            {"mnuFileItem(7)", "Get Settings", "getsettings", "", getsettings},
            {"mnuFileItem(8)", "Model Size...", "size", "", dialog("setmem")},
            {"mnuFileItem(9)"},
            {"mnuFileItem(10)", "E&xit", "exit", "Ctrl+Q", [] { menuexit(); }},
        });
    addto(t, "", "files",
          {{.name = "savebutton",
            .caption = "Save",
            .icon = "save",
            .keys = "Ctrl+S",
            .run = savenow,
            .places = {{"filebar", 3}},
            .enabled = isfree,
            .tip = "Save the model under its name",
            .why = locked}});
    addto(t, "", "print",
          {
              {"printpreviewbutton",
               "Print preview...",
               "preview",
               "Ctrl+Shift+P",
               showprintpreview,
               {{"filebar/printbutton", 1}}},
              {"printsetupbutton",
               "Page setup...",
               "pagesetup",
               "",
               showprintsetup,
               {{"filebar/printbutton", 2}}},
              {.name = "copypicture",
               .caption = "Copy Picture",
               .icon = "copy",
               .keys = "Ctrl+Shift+C",
               .run =
                   [] {
                       QGuiApplication::clipboard()->setImage(
                           themainwindow->view(activeview)->surface.picture());
                       theplatform().showstatus("The picture of the view is on the clipboard");
                   },
               .places = {{"filebar/printbutton", 11}},
               .tip = "The picture of the active view to the clipboard"},
              {"printpdfbutton",
               "Print to PDF...",
               "pdf",
               "Ctrl+Shift+F",
               printtopdf,
               {{"filebar/printbutton", 3}}},
              {"viewpicturebutton",
               "Picture of the views...",
               "picture",
               "",
               askpicture,
               {{"filebar/printbutton", 11}}},
              {"resulttablesbutton",
               "Table of results...",
               "table",
               "",
               asktables,
               {{"filebar/printbutton", 12}}},
          });
}

static void addedit(actionrows& t) {
    addto(t, "", "edit",
          {
              steprow("stepback", "Step Back", "Ctrl+Z", 1, true),
              steprow("stepforward", "Step Forward", "Ctrl+Shift+Z; Ctrl+Y", 2, false),
          });
    addto(t, "", "script",
          {
              {.name = "record",
               .caption = "Record",
               .icon = "record",
               .keys = "Ctrl+Shift+R",
               .run = togglerecording,
               .places = {{"scriptbar", 1, "recordbutton"}},
               .checked = isrecording,
               .tip = "Record what is done as a script; again: end it",
               .unrecorded = true},
              {.name = "playscript",
               .caption = "Play Script...",
               .icon = "play",
               .keys = "Ctrl+Shift+L",
               .run = playfile,
               .places = {{"scriptbar/recordbutton", 1}},
               .enabled = isfree,
               .why = locked},
          });
    addto(t, "&Edit", "edit",
          {
              {.name = "mnuEditItem(0)",
               .caption = "Undo",
               .icon = "undo",
               .run = editundo,
               .enabled = enabledof(mnuEditItem, 0),
               .why = "No move or paste that can be taken back; Step Back goes further"},
              {"mnuEditItem(1)",
               "Delete",
               "delete",
               "Del",
               editdelete,
               {{"editbar", 3}, {"popup02", 4, "popItem02(3)"}}},
              {"mnuEditItem(2)", "Cu&t", "cut", "Ctrl+X", editcut},
              {"mnuEditItem(3)",
               "C&opy",
               "copy",
               "Ctrl+C",
               editcopy,
               {{"editbar", 4}, {"popup02", 1, "popItem02(0)", "Copy"}}},
              {"mnuEditItem(4)",
               "&Paste",
               "paste",
               "Ctrl+V",
               [] { editpaste(); },
               {{"editbar", 5}, {"popup02", 2, "popItem02(1)", "Paste"}}},
              {"mnuEditItem(5)"},
              {"mnuEditItem(6)",
               "Drag/Drop",
               "move",
               "",
               startmove,
               {{"popup02", 3, "popItem02(2)", "Move"}}},
              {"mnuEditItem(7)",
               "Modify Selection...",
               "modify",
               "",
               modifyselection,
               {{"graphicbar", 7}}},
              {"mnuEditItem(8)", "Refine elements", "refine", "", [] { refineelements(); }},
              {"mnuEditItem(9)", "Numerical Interface", "numbers", "", dialog("Numint")},
              {"mnuEditItem(10)", "Findpatch", "patch", "", [] { findpatch(); }},
          });
    const char* const modify = "popup02/Modify Selection";
    addto(t, "", "conditions",
          {
              {.name = "modifypop(0)",
               .caption = "Nodal Loads or Constraints",
               .icon = "constraint",
               .run = attributes(attributemodes::constraints),
               .places = {{modify, 11}},
               .enabled = isattributable,
               .why = "No node or element is selected"},
              {.name = "modifypop(1)",
               .caption = "Element Loads",
               .icon = "pressure",
               .run = attributes(attributemodes::elementloads),
               .places = {{modify, 12}},
               .enabled = iselementselected,
               .why = noelements},
              {.name = "modifypop(2)",
               .caption = "Element properties",
               .icon = "element",
               .run = modifyselection,
               .places = {{modify, 13}},
               .enabled = iselementselected,
               .topic = "edit",
               .why = noelements},
              {.name = "modifypop(3)",
               .caption = "Graphic Properties",
               .icon = "graphic",
               .run = modifyselection,
               .places = {{modify, 14}},
               .enabled = isgraphicselected,
               .topic = "edit",
               .why = "No graphic element is selected"},
          });
}

static void addselect(actionrows& t) {
    const char* const pop = "popup01";
    addto(
        t, "&Select", "mouse",
        {
            selectrow(0, "Nodes", "node",
                      {{"selectbar", 1, "Modify(0)"}, {pop, 11, "popItem01(4)", "Select Nodes"}}),
            selectrow(
                1, "Elements", "element",
                {{"selectbar", 2, "Modify(1)"}, {pop, 12, "popItem01(5)", "Select Elements"}}),
            selectrow(2, "Patches", "patch",
                      {{"selectbar", 4, "Modify(3)"}, {pop, 13, "popItem01(6)", "Select Patches"}}),
            selectrow(3, "Forces", "force", {{"selectbar", 5, "Modify(4)"}}),
            selectrow(
                4, "Graphics", "graphic",
                {{"selectbar", 3, "Modify(2)"}, {pop, 14, "popItem01(7)", "Select Graphics"}}),
            selectrow(5, "Snap", "snap", {{"selectbar", 6}}),
        });
}

// Beside the told items of the menu: on the toolbar and in the pop-ups.
static void addfinding(actionrows& t) {
    addto(t, "", "mouse",
          {
              {.name = "selectby",
               .caption = "Select and find...",
               .icon = "find",
               .keys = "Ctrl+F",
               .run = dialog("Selectby"),
               .places = {{"selectbar", 7},
                          {"popup01", 31, "popselectby"},
                          {"popup02", 31, "popselectby"}},
               .tip = "Select by number, group, type, place or face; find an item",
               .unrecorded = false},
              {.name = "mousesettings",
               .caption = "Mouse...",
               .icon = "mouse",
               .run = dialog("Mouse"),
               .places = {{"popup01", 32, "popmouse"}},
               .tip = "What the buttons, the wheel and fingers do to a view",
               .topic = "mouse"},
          });
}

static void addadd(actionrows& t) {
    const char* const drawing = "popup01/Add Graphics";
    addto(t, "&Add", "mesh",
          {
              addrow(0, "Ready", "", [] { addready(); }),
              addrow(1, "Free Node", "node", startaddnode,
                     {{"popup01", 2, "popItem01(1)", "Add Nodes"}}),
              addrow(2, "Element...", "element", addingdialog("addsingleelem"),
                     {{"popup01", 3, "popItem01(2)", "Add elements"}}),
              addrow(3, "Mesh...", "mesh", addingdialog("Mselect"), {{"jobbar", 4}}),
              addrow(4, "Object...", "object", addingdialog("Objects")),
              {"Mnuadditem(5)"},
              addrow(6, "Constraints...", "constraint", attributes(attributemodes::constraints),
                     {{"jobbar", 5}}),
          });
    addto(t, "&Add|Loads", "conditions",
          {
              {"mnuloads(0)", "Nodal Loads or Mass", "load", "",
               attributes(attributemodes::nodalloads)},
              {"mnuloads(1)", "Element Pressure Loads", "pressure", "",
               attributes(attributemodes::elementloads)},
              {.name = "mnuloads(2)",
               .caption = "Line Pressure Loads",
               .run = attributes(attributemodes::none),
               .tip = linepressurehint},
          });
    addto(t, "&Add", "", {{"Mnuadditem(8)"}});
    addto(t, "&Add|Graphics", "drawing",
          {
              drawrow(0, "Line", "graphic", kindline, drawline,
                      {{"graphicbar", 1}, {drawing, 1, "grapop(0)"}}),
              drawrow(1, "Circle Section", "circle", kindcircle, drawcircle,
                      {{"graphicbar", 2}, {drawing, 11, "grapop(2)", "Circle"}}),
              drawrow(2, "Curve", "curve", kindcurve, drawcurve,
                      {{"graphicbar", 3}, {drawing, 12, "grapop(3)"}}),
              {"Mnugraphicitem(3)"},
              {"Mnugraphicitem(4)",
               "Intersection",
               "intersection",
               "",
               connectrow(connectmodes::intersection),
               {{"graphicbar", 4}}},
              {"Mnugraphicitem(5)",
               "Extend line",
               "extend",
               "",
               connectrow(connectmodes::extend),
               {{"graphicbar", 5}}},
              {"Mnugraphicitem(6)",
               "Connect 3-D",
               "connect",
               "",
               connectrow(connectmodes::connect3d),
               {{"graphicbar", 6}}},
          });
    addto(t, "", "drawing",
          {{"graphoptionsbutton",
            "Graphic Element Options",
            "options",
            "",
            dialog("graphoptions"),
            {{"graphicbar", 8}, {drawing, 21, "grapop(5)", "Options..."}}}});
    int place = 0;
    for (drafttool& tool : drafttools())
        addto(t, "", "drawingtools",
              {{.name = tool.name,
                .caption = tool.caption,
                .icon = tool.icon,
                .run = [&tool] { choosedraft(tool); },
                .places = {{"draftbar", place++}},
                .checked = [&tool] { return isdrafting(tool); },
                .enabled = [] { return !isheld(); },
                .tip = tool.tip,
                .why = locked}});
}

static void adddefine(actionrows& t) {
    addto(t, "&Define", "groups",
          {
              {"definegroup(0)",
               "Element Group...",
               "group",
               "",
               dialog("defgroup"),
               {{"jobbar", 1}}},
              {.name = "definegroup(1)",
               .caption = "Loadcase",
               .icon = "loadcase",
               .run = dialog("Loadkees"),
               .places = {{"jobbar", 2}},
               .topic = "cases"},
              {"definegroup(2)", "Object...", "defineobject", "", dialog("Defobject")},
              {"definegroup(3)", "Group Settings ....", "group", "", dialog("defgroup")},
          });
}

static void addsettings(actionrows& t) {
    addto(t, "&Settings", "settings",
          {{"mnuSettingsItem(0)", "&Colors ...", "colors", "", dialog("Colorset")}});
    addto(t, "&Settings|&Font ...", "settings",
          {
              {"mnusetfont(0)", "Node Labels...", "font", "", asknodefont},
              {"mnusetfont(1)", "Element Lables...", "font", "", askelementfont},
          });
    addto(t, "&Settings", "settings",
          {
              mark("mnuSettingsItem", 2, "Scrollbars", mnuSettingsItem, 2, togglescrollbars),
              toggle("mnuSettingsItem", 3, "Global Axis", mnuSettingsItem),
              toggle("mnuSettingsItem", 4, "Local Axis", mnuSettingsItem),
              {"mnuSettingsItem(5)", "Options...", "options", "", dialog("Options")},
              {"mnuSettingsItem(6)", "Symbols ...", "symbols", "", dialog("Symbols")},
              {"mnuSettingsItem(7)", "Toolbars ...", "toolbars", "", dialog("Toptions")},
              toggle("mnuSettingsItem", 8, "End Releases", mnuSettingsItem),
              {.name = "units",
               .caption = "Units...",
               .icon = "units",
               .run = dialog("Units"),
               .topic = "units"},
          });
}

static void addinformation(actionrows& t) {
    addto(t, "Information", "start",
          {
              {"Info(0)", "Info", "info", "", dialog("Info")},
              {"userhelp(0)", "User Manual...", "help", "", [] { openmanual(); }},
              {"mnuAbout(0)", "&About Kalvane...", "info", "", dialog("frmAbout")},
              {"info(0)", "Model info...", "modelinfo", "", dialog("modelinfo")},
              {"demo01(0)", "Run Demo", "demo", "", rundemo},
          });
    addto(t, "", "start",
          {{.name = "contexthelp",
            .caption = "Help",
            .icon = "help",
            .keys = "F1",
            .run = [] { helpat(topicnow()); },
            .tip = "The manual, at what is going on"}});
}

void fillactions() {
    if (!actions().empty()) return;
    for (const auto add : {addfile, addedit, addselect, addfinding, addadd, adddefine, addsettings,
                           addviewactions, addresultactions, addinformation})
        add(actions());
}
