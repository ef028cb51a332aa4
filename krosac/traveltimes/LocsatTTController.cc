#include "krosac/traveltimes/LocsatTTController.h"

#include <new>
#include <string>

#include "krosac/platform/internal/Reason.h"

namespace krosac {
namespace {

bool hasPiece(std::string_view list, std::string_view name) {
  for (;;) {
    const std::size_t comma = list.find(',');
    if (list.substr(0, comma) == name) return true;
    if (comma == list.npos) return false;
    list.remove_prefix(comma + 1);
  }
}

}  // namespace

Ref<Object> LocsatTTController::init() {
  tables_.clear();
  return Object::init();
}

void LocsatTTController::addTableToList(Ref<LocsatTTTable> table) try {
  if (table) tables_.push_back(std::move(table));
} catch (const std::bad_alloc&) {
  setMemoryReason();
}

Ref<LocsatTTTable> LocsatTTController::tableForPhase(std::string_view phase) const {
  for (const auto& table : tables_) {
    if (table && table->phases() && hasPiece(*table->phases(), phase)) return table;
  }
  return nullptr;
}

}  // namespace krosac
