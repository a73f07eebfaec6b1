#include "store/recordset.hpp"

#include "support/error.hpp"

namespace ldg::store {

void CloseAndDrop(std::unique_ptr<Recordset>& records) {
  if (records) {
    try {
      records->Close();
    } catch (const Error&) {
    }
  }
  records.reset();
}

}  // namespace ldg::store
