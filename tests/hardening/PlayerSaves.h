// The documents a player's saves change in the hardening tests: what they
// hold before, and what a save leaves.
#ifndef VIRELINE_TESTS_HARDENING_PLAYERSAVES_H_
#define VIRELINE_TESTS_HARDENING_PLAYERSAVES_H_

// Player 1's local data folder and milestones.
const char kPlayerFolder[] = "/QV/Bulk/Data/Local/1";
const char kMilestonesPath[] = "/QV/Bulk/Data/Local/1/Milestones.json";
const char kMilestonesOld[] = "{\"a\":true,\"b\":true}";
// After milestone "b" is removed.
const char kMilestonesAfterRemove[] = "{\"a\":true}\n\n";

// CYO progress before, and after item 0 is given status 7.
const char kProgressOld[] = "{\"ItemList\":[{\"Status\":2,\"Tries\":4}],\"Extra\":\"kept\"}";
const char kProgressNew[] = "{\"Extra\":\"kept\",\"ItemList\":[{\"Status\":7,\"Tries\":4}]}\n\n";

#endif  // VIRELINE_TESTS_HARDENING_PLAYERSAVES_H_
