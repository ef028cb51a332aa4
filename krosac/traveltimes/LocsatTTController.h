// A list of LocSAT travel-time tables.
#ifndef KROSAC_TRAVELTIMES_LOCSATTTCONTROLLER_H
#define KROSAC_TRAVELTIMES_LOCSATTTCONTROLLER_H

#include <string_view>
#include <utility>
#include <vector>

#include "krosac/platform/Object.h"
#include "krosac/traveltimes/LocsatTTTable.h"

namespace krosac {

// tableForPhase changes nothing: threads may share one list once it is complete.
class KROSAC_API LocsatTTController : public Object {
 public:
  // Makes the list empty. Returns the object.
  Ref<Object> init() override;

  // Appends the table, which the caller and the list then share. Ignores an empty reference.
  // If memory runs out the list stays as it was and lastReason() says so.
  void addTableToList(Ref<LocsatTTTable> table);

  // Returns the first table whose comma-separated `phases` include the name, compared exactly: case
  // and blanks are significant. Returns an empty reference if there is none.
  Ref<LocsatTTTable> tableForPhase(std::string_view phase) const;

  // The list, in search order.
  const std::vector<Ref<LocsatTTTable>>& tables() const { return tables_; }
  void setTables(std::vector<Ref<LocsatTTTable>> tables) { tables_ = std::move(tables); }

 private:
  std::vector<Ref<LocsatTTTable>> tables_;
};

}  // namespace krosac

#endif
