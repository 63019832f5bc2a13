// A row that tells the world that the game is done. No room has it today.

#include <cstdio>

#include "game/LevelRows.h"

namespace {

constexpr char endpoint[] = "https://share.example/post?";
constexpr char storePage[] = "https://store.example/marlowick";
constexpr Words news{"Hey! I finished all the 100 levels on Marlowick! Do you want to try too?",
                     "Ei! Eu terminei todas as 100 fases do Marlowick! Voce tambem quer tentar?"};

// Characters that mean something in an address, beside those that are not printed.
bool must_be_encoded(double code)
{
    if (code < 32 || code > 126) return true;
    for (const char reserved : " \"#$%&+,/:;<=>?@[\\]^`{|}~")
        if (code == reserved) return true;
    return false;
}

void append(RValue& whole, const char* piece)
{
    RValue more;
    VXCreateString(&more, piece);
    RValue sum = whole + more;
    FREE_RValue(&more);
    FREE_RValue(&whole);
    whole = sum;
}

void append_encoded(RValue& whole, const char* text)
{
    const double length = string_length(text);
    for (double i = 1; i <= length; ++i) {
        const Value character = string_char_at(text, i);
        const double code = ord(character.text());
        char digits[16];
        snprintf(digits, sizeof digits, "%%%02X", static_cast<unsigned>(code));
        append(whole, must_be_encoded(code) ? digits : character.text());
    }
}

}  // namespace

RValue& vxl_Script_url_encode(CInstance* self, CInstance* other, RValue& result, int, RValue** args)
{
    Frame frame(self, other);
    const Value text(*args[0]);
    FREE_RValue(&result);
    VXCreateString(&result, "");
    append_encoded(result, text.text());
    return result;
}

void vxl_Object_oSubmit_KeyRelease_S(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(referrer) = storePage;
    self->var(url) = storePage;
    self->var(message) = idioma == "portugues" ? news.portuguese : news.english;
    self->var(tags) = "marlowick, marlowickmakers";
    show_debug_message("Twitter");

    RValue address;
    VXCreateString(&address, endpoint);
    append(address, "original_referer=");
    append_encoded(address, self->var(referrer).get().text());
    append(address, "&text=");
    append_encoded(address, self->var(message).get().text());
    append(address, "&hashtags=");
    append(address, self->var(tags).get().text());
    append(address, "&url=");
    append_encoded(address, self->var(url).get().text());
    url_open(VXGetText(&address));
    FREE_RValue(&address);
}
