// SPDX-License-Identifier: GPL-3.0-or-later
// What the window remembers from one start to the next, in window.ini of appdir: its place, its
// toolbars, the folder of the last file dialog. Nothing of it belongs to a model.
#pragma once

#include <QSettings>
#include <string>
#include <vector>

class QDialog;
class QMainWindow;

QSettings windowsettings();
// Size, place and state of the window, and where its toolbars stand. False where nothing is
// remembered.
bool restorewindow(QMainWindow& window);
void rememberwindow(const QMainWindow& window);
// The list of recent files: the last ones of all windows, as far as they are still there.
std::vector<std::string> rememberedfiles();
// Size and place of a dialog under its name; false where nothing is remembered.
bool restoredialog(QDialog& dialog);
void rememberdialog(const QDialog& dialog);
// How symbols are drawn.
void restoresymbols();
void remembersymbols();
// The units of new models.
void restoreunits();
void rememberunits();
void rememberfiles(const std::vector<std::string>& files);
