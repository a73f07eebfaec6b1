// The public contract of the ldg engine: the object model rooted at Engine,
// its events and host hooks, and the values that travel through it.
#pragma once

#include "engine/callback.hpp"
#include "engine/db_log.hpp"
#include "engine/db_options.hpp"
#include "engine/engine.hpp"
#include "engine/engine_events.hpp"
#include "engine/files_years.hpp"
#include "engine/host_hooks.hpp"
#include "engine/options.hpp"
#include "support/currency.hpp"
#include "support/error.hpp"
#include "support/messages.hpp"
#include "support/ole_date.hpp"
#include "support/tag_list.hpp"
#include "support/variant.hpp"
#include "support/version.hpp"
