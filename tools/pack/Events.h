#pragma once
// The words of events in the tables, and the numbers that they stand for.

#include <string>

#include "tools/pack/Tables.h"

namespace pack {

// The event type of a word, "Create" to "PreCreate"; -1 when there is none. Every
// word is also the event's name in row names of the code table.
int Event_Type(const std::string& word);
const char* Event_Word(int type);

// The subtype that `word` stands for in events of `type`; an empty word stands for the
// plain one where there is one. -1 when it is none. `objects` names the objects of
// collisions. `shown` becomes the word in the function's name, empty for none.
int Event_Subtype(int type, const std::string& word, const Names& objects, std::string& shown);

// What `Event_Subtype` takes, for messages: "a key such as W or Backspace".
const char* Event_Expects(int type);

}  // namespace pack
