// OpenedYearFile: a year file opened through an Engine of its own for one
// command, logged on as the default user, and closed again when the object
// goes. The open runs the engine's checks and repairs as any open does.
#pragma once

#include <memory>
#include <string>

#include "engine/engine.hpp"
#include "support/variant.hpp"

namespace ldg::cli {

class OpenedYearFile {
 public:
  explicit OpenedYearFile(const std::string& path) : engine_(std::make_unique<Engine>()) {
    Variant user(""), password(""), product("ldg");
    engine_->Init(user, password, product);
    engine_->OpenDatabase(Variant(path));
  }
  ~OpenedYearFile() { engine_->Tini(); }
  OpenedYearFile(const OpenedYearFile&) = delete;
  OpenedYearFile& operator=(const OpenedYearFile&) = delete;

  Engine& engine() { return *engine_; }

 private:
  std::unique_ptr<Engine> engine_;
};

}  // namespace ldg::cli
