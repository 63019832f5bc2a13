// Stories of the menus before the map: the main menu, the questions over it, and the
// screen that asks how many play and who.

#include <functional>

#include "Files/Run/Run_State.h"
#include "game/Gamepad.h"
#include "tests/game/support_Touch.h"

using namespace names;

namespace {

constexpr int kTitleShown = 150;  // frames until the main menu is up
const char kEnglish[] = "[preferencias]\r\ntutorial=\"false\"\r\nidioma=\"ingles\"\r\n";
const char kReturner[] = "[Levels]\r\nLevel1=\"2.000000\"\r\nLevel2=\"1.000000\"\r\n";

Stage::Options Saved(const std::string& more)
{
    Stage::Options options;
    options.save = kEnglish + more;
    return options;
}

struct MainMenu : Stage {
    explicit MainMenu(const std::string& more = "", bool phone = false) : Stage(Saved(more))
    {
        if (phone) BecomePhone();
        g_DrawEnabled = false;  // quicker
        room("room_titulo").frames(kTitleShown);
        g_DrawEnabled = true;
        frames(1);
    }
    int cursor(Object menu_ = oMenuNovo)
    {
        CInstance* controller = find(menu_);
        return controller ? static_cast<int>(variable(controller, "mpos")) : -1;
    }
    // Each key goes down and up, and counts once.
    Stage& keys(std::initializer_list<int> pressed)
    {
        for (const int key : pressed) tap(key).frames(1);
        return *this;
    }
    Stage& button(int which)
    {
        pad(0).press(which);
        frames(1);
        pad(0).release(which);
        return frames(1);
    }
    // Runs out a fade.
    std::string after()
    {
        frames(30);
        return room_name();
    }
};

// ---- the main menu

TEST(Menu, HasThreeRowsForANewcomerAndFourForOneWhoReturns)
{
    const struct {
        const char* levels;
        int rows;
    } files[] = {{"", 3},
                 {"[Levels]\r\nLevel2=\"0.400000\"\r\n", 3},
                 {"[Levels]\r\nLevel2=\"0.600000\"\r\n", 4},
                 {kReturner, 4}};
    for (const auto& file : files) {
        MainMenu menu(file.levels);
        EXPECT_EQ(menu.count(oHitMenuNovo), file.rows) << file.levels;
        EXPECT_EQ(menu.cursor(), 0);
        menu.keys({keyUp});
        EXPECT_EQ(menu.cursor(), file.rows - 1) << "up from the first row is the last";
        menu.keys({keyS});
        EXPECT_EQ(menu.cursor(), 0);
        menu.keys({keyDown, keyLeft, keyD, keyRight});
        EXPECT_EQ(menu.cursor(), 1) << "left and right are of touch platforms";
        EXPECT_EQ(menu.count(oGooglePlus) + menu.count(oFacebook), 0);
    }
}

TEST(Menu, EachRowLeadsWhereItSays)
{
    const struct {
        const char* levels;
        int row;
        const char* room;
        Object screen;
    } ways[] = {{"", 0, "room_personagem", oGameMode},
                {"", 1, "room_titulo", oMenuOptionsNovo},
                {"", 2, "room_titulo", oTelaSair},
                {kReturner, 0, "room_personagem", oGameMode},
                {kReturner, 1, "room_titulo", oTelaConfirmaRecomeca},
                {kReturner, 2, "room_titulo", oMenuOptionsNovo},
                {kReturner, 3, "room_titulo", oTelaSair}};
    for (const auto& way : ways)
        for (const bool byMouse : {false, true}) {
            MainMenu menu(way.levels);
            if (byMouse) {
                menu.click(427, 230 + 60 * way.row + 25);
            } else {
                for (int i = 0; i < way.row; ++i) menu.keys({keyDown});
                menu.keys({way.row % 2 == 0 ? keyEnter : keySpace});
            }
            EXPECT_EQ(menu.after(), way.room) << way.levels << way.row;
            EXPECT_EQ(menu.count(way.screen), 1) << way.levels << way.row;
        }
}

TEST(Menu, AStickThatIsHeldGivesOneStepAndThePadConfirms)
{
    MainMenu menu;
    menu.pad(0).axis(gp_axislv, 1);
    menu.frames(10);
    EXPECT_EQ(menu.cursor(), 1);
    menu.pad(0).axis(gp_axislv, 0.4);
    menu.frames(2);
    menu.pad(0).axis(gp_axislv, 1);
    menu.frames(10);
    EXPECT_EQ(menu.cursor(), 2);
    menu.pad(0).axis(gp_axislv, 0);
    menu.button(gp_padd).frames(2);
    EXPECT_EQ(menu.cursor(), 0);
    menu.button(gp_start);
    EXPECT_EQ(menu.after(), "room_personagem");
}

TEST(Menu, TheMouseOverARowOverrulesTheKeys)
{
    MainMenu menu;
    menu.mouse(427, 315).frames(1);
    EXPECT_EQ(menu.cursor(), 1);
    menu.keys({keyDown});
    EXPECT_EQ(menu.cursor(), 1);
    menu.mouse(20, 400).frames(1);
    EXPECT_EQ(menu.cursor(), 1) << "it stays where the mouse left it";
    menu.click(20, 400);
    menu.keys({keyDown});
    EXPECT_EQ(menu.cursor(), 2);
    EXPECT_EQ(menu.count(oTransicao), 0) << "a click beside the rows";
}

// ---- the question whether to leave

TEST(Question, NoBringsTheTitleBackWithItsCursorAndYesEnds)
{
    const std::function<void(MainMenu&)> noes[] = {
        [](MainMenu& menu) {
            menu.keys({keyRight, keyEnter});
        },
        [](MainMenu& menu) {
            menu.keys({keyA, keySpace});
        },
        [](MainMenu& menu) {
            menu.keys({keyDown, keyEnter});
        },
        [](MainMenu& menu) { menu.button(gp_face2); },
        [](MainMenu& menu) { menu.click(800, 40); },
    };
    for (const auto& no : noes) {
        MainMenu menu;
        menu.keys({keyUp, keyEnter});
        ASSERT_EQ(menu.count(oTelaSair), 1);
        EXPECT_EQ(menu.count(oMenuNovo), 0) << "asleep";
        EXPECT_EQ(menu.count(oTitulo), 0);
        EXPECT_EQ(menu.count(oAvaliar), 0) << "of touch platforms";
        EXPECT_EQ(menu.find(oConfirma)->x, 397);
        EXPECT_EQ(menu.find(oConfirma)->y, 170);
        no(menu);
        for (const Object gone : {oTelaSair, oConfirma, oConfirmaVoltar, oMenuSair})
            EXPECT_EQ(menu.count(gone), 0);
        for (const Object back :
             {oTitulo, oPersonagemCapa, oPersonagemCapa2, oConfiguracoes, oMenuNovo, oRaiosDeSol})
            EXPECT_EQ(menu.count(back), 1);
        menu.frames(2);
        EXPECT_EQ(menu.cursor(), 2);
        EXPECT_EQ(menu.count(oHitMenuNovo), 3) << "the same ones again";
        EXPECT_TRUE(menu.running());
    }
    for (const bool byMouse : {false, true}) {
        MainMenu menu;
        menu.keys({keyUp, keyEnter}).clear_console();
        byMouse ? menu.click(427, 200) : menu.keys({keyUp, keyDown, keyEnter});
        EXPECT_FALSE(menu.running()) << byMouse;
        EXPECT_EQ(menu.console().rfind("Apertou o botão de confirmação de saída\n", 0), 0U);
    }
}

TEST(Question, BackspaceAndThePadAskOnceTheMenuIsUp)
{
    for (const bool byPad : {false, true}) {
        MainMenu menu;
        menu.room("room_titulo").frames(30);
        byPad ? menu.button(gp_select) : menu.keys({keyBackspace});
        EXPECT_EQ(menu.count(oTelaSair), 0) << "the title takes no input yet";
        menu.frames(kTitleShown);
        byPad ? menu.button(gp_select) : menu.keys({keyBackspace});
        EXPECT_EQ(menu.count(oTelaSair), 1);
        menu.keys({keyRight, keyEnter}).frames(5);
        EXPECT_EQ(menu.count(oTelaSair), 0);
        EXPECT_EQ(menu.count(oTitulo), 1);
    }
}

TEST(Question, TheMouseDrawsTheCursorAndAHeldButtonShowsIt)
{
    MainMenu menu;
    menu.keys({keyUp, keyEnter}).mouse(800, 40).frames(2);
    EXPECT_EQ(menu.cursor(oMenuSair), 1);
    menu.mouse(427, 200).frames(2);
    EXPECT_EQ(menu.cursor(oMenuSair), 0);
    menu.press(427, 200).frames(2);
    EXPECT_EQ(menu.find(oConfirma)->image_index, 1);
    menu.mouse(600, 300).frames(1).let_go(600, 300).frames(1);
    EXPECT_EQ(menu.find(oConfirma)->image_index, 0) << "dragged off";
    EXPECT_TRUE(menu.running());
}

// ---- the question whether to begin anew

TEST(Question, TheCampaignIsWipedByYesAlone)
{
    const std::string times = "[Tempo]\r\nTotal=\"9.000000\"\r\n";
    MainMenu menu(kReturner + times);
    const std::string before = menu.save_file();
    menu.keys({keyDown, keyEnter});
    menu.keys({keyUp});
    EXPECT_EQ(menu.cursor(oMenuConfirmaRecomeca), 1);
    menu.keys({keyEnter}).frames(3);
    EXPECT_EQ(menu.save_file(), before);
    EXPECT_EQ(menu.cursor(), 1) << "where it was";
    EXPECT_EQ(menu.count(oConfirmaRecomeca), 0);

    menu.clear_console();
    menu.keys({keyEnter, keyEnter});
    EXPECT_EQ(menu.console(), "Apertou o botão de confirmação de recomeçar campanha\n");
    EXPECT_EQ(menu.save_file().find("Level"), std::string::npos) << menu.save_file();
    EXPECT_NE(menu.save_file().find("Total=\"9.000000\""), std::string::npos);
    EXPECT_EQ(menu.after(), "room_personagem");
}

// ---- who plays

struct PlayersScreen : MainMenu {
    explicit PlayersScreen(const std::string& more = "") : MainMenu(more)
    {
        room("room_personagem").frames(2);
    }
    bool has(const std::string& line) const
    {
        return save_file().find(line + "\r\n") != std::string::npos;
    }
};

TEST(Players, TheModeGoesRoundAndIsStoredAtOnce)
{
    PlayersScreen screen;
    EXPECT_EQ(screen.global_text("playerMode"), "onePlayer");
    EXPECT_EQ(screen.count(oJogadorUm), 0);
    const struct {
        const char* mode;
        int shown, icon;
    } modes[] = {{"twoPlayersOne", 1, 1}, {"twoPlayersTwo", 1, 2}, {"onePlayer", 0, 0}};
    for (const bool byMouse : {false, true})
        for (const auto& mode : modes) {
            byMouse ? screen.click(427, 150).frames(2) : screen.keys({keyEnter}).frames(1);
            EXPECT_EQ(screen.global_text("playerMode"), mode.mode);
            EXPECT_TRUE(screen.has("modo=\"" + std::string(mode.mode) + "\""));
            EXPECT_EQ(screen.count(oJogadorUm), mode.shown);
            EXPECT_EQ(screen.count(oJogadorDois), mode.shown);
            EXPECT_EQ(screen.find(oPlayerMode)->image_index, mode.icon);
            const bool alone = mode.shown == 0;
            EXPECT_EQ(screen.find(oChangePlayer)->sprite_index,
                      alone ? sPlayer.index : sChangePlayer.index);
        }
}

TEST(Players, BothCharactersChangeTogetherAndAreRemembered)
{
    PlayersScreen screen("modo=\"twoPlayersOne\"\r\n");
    ASSERT_EQ(screen.count(oJogadorUm), 1);
    EXPECT_EQ(screen.find(oJogadorUm)->x, 323);
    EXPECT_EQ(screen.find(oJogadorDois)->x, 479);
    EXPECT_EQ(screen.find(oJogadorDois)->sprite_index, sPlayer2.index);
    screen.keys({keyDown, keySpace}).frames(2);
    EXPECT_EQ(screen.global_text("jogadorUm"), "menina");
    EXPECT_EQ(screen.global_text("jogadorDois"), "menino");
    EXPECT_TRUE(screen.has("jogador_um=\"menina\""));
    EXPECT_TRUE(screen.has("jogador_dois=\"menino\""));
    EXPECT_EQ(screen.find(oJogadorUm)->sprite_index, sPlayer2.index);
    EXPECT_EQ(screen.find(oJogadorDois)->sprite_index, sPlayer.index);

    screen.keys({keyDown, keyEnter}).frames(14);
    EXPECT_EQ(screen.room_name(), "room_menu1");
    screen.room("room_level1").frames(2);
    EXPECT_EQ(screen.count(oPlayerArrows2), 1);
    EXPECT_EQ(screen.find(oPlayerArrows)->sprite_index, sPlayer2.index);
}

TEST(Players, TheMouseGoesOnAndBackspaceAndPadLeadToTheTitle)
{
    PlayersScreen screen;
    screen.mouse(427, 270).frames(2);
    EXPECT_EQ(screen.cursor(oMenuGameMode), 1);
    screen.click(427, 270);
    EXPECT_EQ(screen.global_text("jogadorUm"), "menina");
    screen.mouse(427, 410).frames(2);
    EXPECT_EQ(screen.cursor(oMenuGameMode), 2);
    screen.click(427, 410);
    EXPECT_EQ(screen.after(), "room_menu1");
    for (const int back : {int(keyBackspace), int(gp_select), int(gp_face2)}) {
        screen.room("room_personagem").frames(2);
        if (back == keyBackspace)
            screen.hold(back);
        else
            screen.pad(0).press(back);
        screen.frames(8);
        EXPECT_EQ(screen.count(oTransicao), 1) << "held, it is one press";
        if (back == keyBackspace)
            screen.release(back);
        else
            screen.pad(0).release(back);
        EXPECT_EQ(screen.after(), "room_titulo");
    }
}

// ---- touch platforms

TEST(TouchMenu, LeftAndRightJumpBetweenTheRowsAndTheSocialButtons)
{
    const struct {
        const char* levels;
        int rows;
    } files[] = {{"", 3}, {kReturner, 4}};
    for (const auto& file : files) {
        MainMenu menu(file.levels, true);
        const int first = file.rows, second = first + 1, last = first - 1;
        ASSERT_EQ(menu.count(oGooglePlus) + menu.count(oFacebook), 2);
        menu.keys({keyDown, keyRight});
        EXPECT_EQ(menu.cursor(), first);
        menu.keys({keyRight});
        EXPECT_EQ(menu.cursor(), 0);
        menu.keys({keyLeft});
        EXPECT_EQ(menu.cursor(), second);
        menu.keys({keyLeft});
        EXPECT_EQ(menu.cursor(), last);
        menu.keys({keyRight, keyDown});
        EXPECT_EQ(menu.cursor(), 0) << "down from a button wraps to a row";
        menu.mouse(40, 120).frames(2);
        EXPECT_EQ(menu.cursor(), second);
        menu.clear_console();
        menu.click(40, 120).mouse(300, 470);
        menu.keys({keyRight, keyRight, keyEnter});
        EXPECT_EQ(menu.console(), "Apertou o botão Facebook\nApertou o botão Google Plus\n");
        EXPECT_EQ(g_pages.size(), 2U);
    }
}

TEST(TouchMenu, TheExitQuestionAsksForARatingOnce)
{
    {
        MainMenu menu("", true);
        menu.keys({keyUp, keyEnter});
        EXPECT_EQ(menu.find(oAvaliar)->x, 327);
        EXPECT_EQ(menu.find(oConfirma)->x, 457);
        EXPECT_EQ(menu.cursor(oMenuSair), 1);
        menu.keys({keyDown});
        EXPECT_EQ(menu.cursor(oMenuSair), 2);
        menu.keys({keyUp, keyLeft, keyS});
        EXPECT_EQ(menu.cursor(oMenuSair), 2);
        menu.keys({keyRight, keyEnter});
        EXPECT_NE(menu.save_file().find("qualificacao=\"true\""), std::string::npos);
        EXPECT_EQ(g_pages.size(), 1U);
        EXPECT_EQ(menu.count(oTelaObrigado), 1);
        EXPECT_EQ(menu.count(oMenuSair) + menu.count(oAvaliar), 0);
        EXPECT_TRUE(menu.running());
        menu.click(10, 10);
        EXPECT_FALSE(menu.running()) << "after the thanks";
    }
    MainMenu menu("qualificacao=\"true\"\r\n", true);
    menu.keys({keyUp, keyEnter});
    EXPECT_EQ(menu.count(oAvaliar), 0);
    EXPECT_EQ(menu.cursor(oMenuSair), 0);
}

}  // namespace
