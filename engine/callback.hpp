// Callback: the object a front end hands to Engine::Callback to hear of work
// done deep inside the engine. The only action the engine sends is
// "DoneDefinitive", with the value its caller gave.
#pragma once

#include "support/variant.hpp"

namespace ldg {

class Callback {
 public:
  virtual ~Callback() = default;
  virtual void Action(const Variant& text, const Variant& value) = 0;
};

}  // namespace ldg
