// SPDX-License-Identifier: GPL-3.0-or-later
// The foreign formats as rows of the file dialogs.
#pragma once

void wireexchange();
