// make_template: writes the template file from its schema description.
//
//   make_template <description> <output file>
//
// The file is built under a temporary name beside the output and renamed over
// it only when complete, so a failed run leaves the old template (or none),
// never a half-built one.
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "engine/schema/schema_description.hpp"
#include "engine/schema/template_builder.hpp"
#include "store/db_engine.hpp"
#include "support/error.hpp"

namespace {

int Run(const std::filesystem::path& description, const std::filesystem::path& output) {
  ldg::schema::SchemaDescription schema = ldg::schema::LoadSchemaDescription(description);
  std::filesystem::path building = output;
  building += ".building";
  std::filesystem::remove(building);
  std::unique_ptr<ldg::store::DBEngine> engine = ldg::store::NewSqliteEngine();
  ldg::schema::TemplateBuilder(schema).Build(*engine, building.string());
  engine.reset();
  std::filesystem::rename(building, output);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: make_template <description> <output file>\n");
    return 2;
  }
  try {
    return Run(argv[1], argv[2]);
  } catch (const ldg::Error& error) {
    std::fprintf(stderr, "make_template: %s (store error %d)\n", error.Description().c_str(),
                 static_cast<int>(error.Number()));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_template: %s: %s\n", argv[1], error.what());
  }
  return 1;
}
