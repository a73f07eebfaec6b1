// ldg demo [DIR]: makes the year file of a demo company, a small Zurich
// trustee firm, in DIR (the current folder by default), with its chart of
// accounts and opening balances, shows what the engine knows about it, posts
// the first quarter's book entries and shows the trial balance at its end. A
// file of an earlier run is replaced, so every run gives the same.
#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "cli/chart_listing.hpp"
#include "cli/command.hpp"
#include "cli/demo_chart.hpp"
#include "cli/demo_quarter.hpp"
#include "cli/trial_balance.hpp"
#include "cli/year_file_summary.hpp"
#include "engine/engine.hpp"
#include "engine/options.hpp"
#include "support/paths.hpp"
#include "support/variant.hpp"

namespace ldg::cli {
namespace {

constexpr const char* kDemoFile = "muster-treuhand-2026.qdb6f";

void RunDemo(const std::string& folder) {
  std::filesystem::create_directories(folder);
  const std::string path = JoinPath(folder, kDemoFile);
  std::filesystem::remove(path);

  Engine engine;
  Variant user("");
  Variant password("");
  Variant product("ldg");
  engine.Init(user, password, product);
  engine.CreateDatabase(Variant(path), Variant("01.01.2026"), Variant("31.12.2026"), std::nullopt);
  engine.Options()->ClientName(Variant("Muster Treuhand AG"));
  engine.Options()->ClientExtraText(Variant("Bahnhofstrasse 1, 8001 Zürich"));

  AddDemoChart(*engine.Accounts());

  std::cout << "ldg " << engine.Version() << "\n\n";
  std::cout << "Demo company's year file: " << path << "\n\n";
  YearFileSummary(engine).Print(std::cout, OutputFormat::kText);
  std::cout << "\nChart of accounts with opening balances:\n\n";
  ChartListing(*engine.Accounts()).Print(std::cout, OutputFormat::kText);

  const int32_t posted = PostDemoQuarter(engine);
  std::cout << "\nFirst quarter: " << posted << " book entries posted.\n";
  std::cout << "\nTrial balance at 31.03.2026:\n\n";
  TrialBalance(engine, OleDate::FromYmd(2026, 3, 31)).Print(std::cout, OutputFormat::kText);
  engine.Tini();
}

const bool kRegistered = RegisterCommand([](CLI::App& app) {
  auto* command =
      app.add_subcommand("demo", "Make a demo company's year file and show what the engine knows");
  auto folder = std::make_shared<std::string>(".");
  command->add_option("dir", *folder, "Folder for the demo file")->capture_default_str();
  command->callback([folder] { RunDemo(*folder); });
});

}  // namespace
}  // namespace ldg::cli
