#pragma once
// A world without an archive: objects and rooms made by hand, whose events all
// record themselves in one log and then do what the test says.

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Files/Code/CCode.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"

struct EventKey {
    int32_t type, subtype;
};

// "Create", "Begin", "Step", "End", "Alarm0", "Key65", "Press65", "Release65", "Mouse50",
// "Outside", "Boundary", "AnimationEnd", "RoomStart", "Hit(<object>)", "User0", ...
std::string EventLabel(int32_t type, int32_t subtype);

using Log = std::vector<std::string>;
using Reaction = std::function<void(CInstance* self, CInstance* other)>;

class World : public ::testing::Test {
public:
    static World* Current();
    Log Take();  // and empties it
    void Ran(CInstance* self, CInstance* other, const std::string& label);

protected:
    void SetUp() override;
    void TearDown() override;

    // ---- the cast; call before Begin
    int32_t AddObject(const char* name, const std::vector<EventKey>& events, int32_t parent = -1);
    CObjectSW& Object(int32_t index) { return *Object_Data(index); }
    int32_t AddRoom(const char* name);
    // The id of a placed instance. Codes are named in the log as "<name>#<id>".
    int32_t Place(int32_t room, int32_t object, int32_t x = 0, int32_t y = 0,
                  const char* createCode = nullptr, const char* preCreateCode = nullptr);
    void SetRoomCode(int32_t room, const char* name);
    int32_t AddBoxSprite(int32_t width, int32_t height, int32_t frames = 1);
    int32_t AddCode(const char* name);  // number of a code object that records itself

    // Binds everything and starts the first room of the order, which is the order of
    // AddRoom. The log is empty then unless `keepLog`.
    void Begin(bool keepLog = false);
    void Frame();  // a step without a draw, and the room change that it asked for
    void StepOnly();

    // ---- the log: "<object>.<event>" with the name of the object whose event runs
    void Note(const std::string& text);
    // Runs in "<object>.<event>" after it is recorded, each time.
    void On(const std::string& label, Reaction reaction);
    void Forget(const std::string& label);  // the event happens but is not recorded

    CInstance* First(int32_t object);
    std::vector<int32_t> ActiveIds();

private:
    Log log_;
    std::map<std::string, Reaction> reactions_;
    std::map<std::string, bool> silent_;
    std::vector<std::string> names_;
    std::vector<CodeRow> rows_;
    std::vector<int32_t> order_;
};

// Records all events of one test's services: "network", "steam", "async", "particles".
void World_HookServices();
void World_UnhookServices();
