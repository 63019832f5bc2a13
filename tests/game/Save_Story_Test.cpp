// The save file, byte for byte, as the game's events write it: each opens the file,
// reads or writes its few keys, and closes it.

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <variant>

#include "Files/Function/Function_Registry.h"
#include "tests/support/Stage.h"

namespace {

using Argument = std::variant<double, const char*>;

double Script(const char* name, std::initializer_list<Argument> arguments = {})
{
    RValue values[4], result;
    int count = 0;
    for (const Argument& argument : arguments) {
        if (const double* number = std::get_if<double>(&argument))
            values[count++] = RValue(*number);
        else
            VXCreateString(&values[count++], std::get<const char*>(argument));
    }
    Function_Record(Function_Find(name))->routine(result, nullptr, nullptr, count, values);
    const double number = result.Kind() == VALUE_REAL ? REAL_RValue(&result) : 0;
    FREE_RValue(&result);
    for (RValue& value : values) FREE_RValue(&value);
    return number;
}

void WriteText(const char* key, const char* value)
{
    Script("ini_write_string", {"preferencias", key, value});
}

void ChooseEnglish()
{
    ini_open("SaveGame.sav");
    WriteText("idioma", "ingles");
    WriteText("tutorial", "false");
    Script("ini_close");
}

void FinishLevelOne(double seconds)
{
    ini_open("SaveGame.sav");
    const double next = ini_read_real("Levels", "Level2", 0);
    Script("ini_close");
    ini_open("SaveGame.sav");
    ini_write_real("Levels", "Level1", 2);
    if (next == 0) ini_write_real("Levels", "Level2", 1);
    Script("ini_close");
    ini_open("SaveGame.sav");
    ini_write_real("Tempo", "Segundos", seconds);
    ini_write_real("Tempo", "Minutos", 0);
    ini_write_real("Tempo", "Horas", 0);
    ini_write_real("Tempo", "Total", seconds);
    ini_write_real("Tempo", "room_level1", seconds);
    Script("ini_close");
}

const std::string kAfterLevelOne =
    "[Tempo]\r\nroom_level1=\"41.000000\"\r\nTotal=\"41.000000\"\r\nHoras=\"0.000000\"\r\n"
    "Minutos=\"0.000000\"\r\nSegundos=\"41.000000\"\r\n"
    "[preferencias]\r\ntutorial=\"false\"\r\nidioma=\"ingles\"\r\n"
    "[Levels]\r\nLevel1=\"2.000000\"\r\nLevel2=\"1.000000\"\r\n";

TEST(SaveStory, TheFirstLevelOfAPlayerWhoChoseEnglish)
{
    Stage stage;
    stage.room("room_level1").frames(2);
    EXPECT_EQ(stage.save_file(), "") << "nothing was written so far";
    EXPECT_EQ(stage.global_text("gameType"), "normal");
    ChooseEnglish();
    EXPECT_EQ(stage.save_file(), "[preferencias]\r\ntutorial=\"false\"\r\nidioma=\"ingles\"\r\n");
    FinishLevelOne(41);
    EXPECT_EQ(stage.save_file(), kAfterLevelOne);
}

TEST(SaveStory, TheNextRunReadsWhatThisOneWrote)
{
    std::string kept;
    {
        Stage stage;
        ChooseEnglish();
        FinishLevelOne(41);
        ini_open("SaveGame.sav");
        WriteText("velocidade", "fast");
        Script("ini_close");
        kept = stage.save_file();
        ini_open("SaveGame.sav");
        WriteText("velocidade", "slow");
    }
    Stage::Options options;
    options.save = kept;
    Stage stage(options);
    stage.room("room_level1").frames(2);
    EXPECT_EQ(stage.global_text("gameType"), "fast") << "a file left open is not saved";
    EXPECT_EQ(stage.save_file(), kept) << "a level that is only begun writes nothing";
    ini_open("SaveGame.sav");
    EXPECT_EQ(ini_read_real("Levels", "Level1", 0), 2);
    EXPECT_EQ(ini_read_real("Tempo", "room_level1", 0), 41);
    Script("ini_close");
}

TEST(SaveStory, DeletingTheFileLosesAllAndTheNextWriteMakesItAnew)
{
    Stage::Options options;
    options.save = kAfterLevelOne;
    Stage stage(options);
    EXPECT_EQ(Script("file_exists", {"SaveGame.sav"}), 1);
    EXPECT_EQ(Script("file_delete", {"SaveGame.sav"}), 1);
    EXPECT_EQ(Script("file_exists", {"SaveGame.sav"}), 0);
    stage.room("room_level1").frames(2);
    EXPECT_TRUE(stage.running());
    ChooseEnglish();
    EXPECT_EQ(stage.save_file(), "[preferencias]\r\ntutorial=\"false\"\r\nidioma=\"ingles\"\r\n");
}

}  // namespace
