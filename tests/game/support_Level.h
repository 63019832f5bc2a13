#pragma once
// Level 1 as a stage for stories: floor from (156, 104) to (624, 312), the box and the
// target where a story wants them, one figure or two.

#include <gtest/gtest.h>

#include <string>

#include "Files/Function/Function_Registry.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Room/Room_Main.h"
#include "Names.h"
#include "tests/support/Stage.h"

struct LevelStory {
    explicit LevelStory(const char* mode = "onePlayer", const char* speed = "normal",
                        const std::string& save = "", const char* first = "room_level1")
        : stage(Options(speed, save))
    {
        names::playerMode = mode;
        names::jogadorUm = "menino";
        names::jogadorDois = "menina";
        names::idioma = "ingles";
        Enter(first);
    }

    static Stage::Options Options(const char* speed, const std::string& save)
    {
        Stage::Options options;
        options.save = "[preferencias]\r\nvelocidade=\"" + std::string(speed) + "\"\r\n" + save;
        return options;
    }
    void Enter(const std::string& name)
    {
        stage.room(name).frames(2);
        Look();
    }
    void Look()
    {
        one = stage.find(names::oPlayerArrows);
        two = stage.find(names::oPlayerArrows2);
        box = stage.find(names::oMonte);
    }
    // Lets everything come to rest.
    LevelStory& Rest()
    {
        stage.frames(30);
        return *this;
    }
    LevelStory& Tap(int key)
    {
        stage.tap(key).frames(16);
        return *this;
    }
    static std::string Word(const Global& history, int step) { return history[step].get().text(); }
    static std::string BoxWord(const Global& boxes, int row, int step)
    {
        return boxes(row, step).get().text();
    }

    Stage stage;
    CInstance *one = nullptr, *two = nullptr, *box = nullptr;
};

inline void Put(CInstance* instance, float px, float py)
{
    instance->SetPosition(px, py);
}

// A built-in of this run answers as the story wants.
inline void Serve(const char* name, BuiltinRoutine routine)
{
    const_cast<FunctionRecord*>(Function_Record(Function_Find(name)))->routine = routine;
}

#define EXPECT_AT(instance, X, Y)  \
    EXPECT_EQ((instance)->x, (X)); \
    EXPECT_EQ((instance)->y, (Y))

constexpr int kLeft = 37, kUp = 38, kRight = 39, kDown = 40;
