// The consumable packages of the running game that the current player still
// has, and the marking of one as used up.
#ifndef VIRELINE_CCONSUMABLE_H_
#define VIRELINE_CCONSUMABLE_H_

#include <vector>

#include <vireline/Export.h>
#include <vireline/Types.h>

namespace LTM {

class VIRELINE_EXPORT CConsumable {
 public:
  // The current player's consumables of the running game, each folder
  // followed by "/"; packages already given back are left out.
  std::vector<Glib::ustring> Get();

  // Marks the consumable in `packagePath` as used up: no player may use it
  // any more, and the inventory manager is asked to remove it.
  void Receive(Glib::ustring packagePath);
};

}  // namespace LTM

#endif  // VIRELINE_CCONSUMABLE_H_
