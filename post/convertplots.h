// SPDX-License-Identifier: GPL-3.0-or-later
// What legend, probes and cuts keep follows the model into other units.
#pragma once

void wireconversion();
