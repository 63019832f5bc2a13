#pragma once
// The content of the game as the packer reads it, without pictures; read once.

#include <string>
#include <vector>

#include "tools/pack/Build.h"

struct Game {
    pack::Tables tables = pack::Tables_Read(CONTENT_FOLDER);
    pack::CodePlan plan = pack::Code_Plan(tables);
    pack::Built built;

    Game()
    {
        pack::Build_Objects(tables, plan, built.content);
        pack::Build_Rooms(CONTENT_FOLDER, tables, plan,
                          std::vector<bool>(tables.backgrounds.size(), true), built);
    }
    static const Game& Get()
    {
        static const Game game;
        return game;
    }

    const archive::Room& Room(const std::string& name) const
    {
        return built.content.rooms[static_cast<size_t>(tables.roomNames.Find(name))];
    }
    const archive::Object& Object(const std::string& name) const
    {
        return built.content.objects[static_cast<size_t>(tables.objectNames.Find(name))];
    }
    // "oWall 364,-104 3x1", one an instance.
    std::vector<std::string> Listed(const archive::Room& room) const
    {
        std::vector<std::string> lines;
        for (const archive::RoomInstance& i : room.instances) {
            std::string line = tables.objectNames.List()[static_cast<size_t>(i.objectIndex)];
            line += " " + std::to_string(i.x) + "," + std::to_string(i.y);
            if (i.scaleX != 1 || i.scaleY != 1) {
                line += " " + std::to_string(static_cast<int>(i.scaleX)) + "x" +
                        std::to_string(static_cast<int>(i.scaleY));
            }
            lines.push_back(line);
        }
        return lines;
    }
};
