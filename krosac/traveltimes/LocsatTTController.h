// A list of LocSAT travel-time tables.
#ifndef KROSAC_TRAVELTIMES_LOCSATTTCONTROLLER_H
#define KROSAC_TRAVELTIMES_LOCSATTTCONTROLLER_H

#include <string_view>
#include <utility>
#include <vector>

#include "krosac/platform/Object.h"
#include "krosac/traveltimes/LocsatTTTable.h"

namespace krosac {

class KROSAC_API LocsatTTController : public Object {
 public:
  // An empty list of tables. Gives the object.
  Ref<Object> init() override;

  // Appends the table, which is shared with the caller; an empty reference is left out.
  void addTableToList(Ref<LocsatTTTable> table);

  // The first table whose `phases`, split at each comma, has the name among its pieces; upper and
  // lower case and blanks count. None when no table does.
  Ref<LocsatTTTable> tableForPhase(std::string_view phase) const;

  // The whole list, in the order in which it is searched.
  const std::vector<Ref<LocsatTTTable>>& tables() const { return tables_; }
  void setTables(std::vector<Ref<LocsatTTTable>> tables) { tables_ = std::move(tables); }

 private:
  std::vector<Ref<LocsatTTTable>> tables_;
};

}  // namespace krosac

#endif
