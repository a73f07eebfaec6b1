// The public contract of the ldg engine: the object model rooted at Engine.
#pragma once

#include "support/currency.hpp"
#include "support/error.hpp"
#include "support/ole_date.hpp"
#include "support/variant.hpp"
#include "support/version.hpp"
