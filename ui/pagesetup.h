// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Page Setup": paper, orientation and margin, with a printer and without one.
#pragma once

class QDialog;
class QPrinter;

// Shows the printer's page and changes it by OK. The printer must outlive the window.
QDialog* makepagesetup(QPrinter& printer);
