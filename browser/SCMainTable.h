// SPDX-License-Identifier: MIT
#pragma once

#include "platform/views/TableView.h"

/// The main window's station table: a table without any behaviour of its own.
using SCMainTable = platform::TableView;
