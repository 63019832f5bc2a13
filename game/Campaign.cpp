// Beginning the campaign anew: all levels are locked again, the language and the time
// of play stay.

#include "game/Transition.h"

namespace {

struct StoredTime {
    const char* key;
    InstanceVar kept;
};
constexpr StoredTime storedTimes[] = {
    {"Segundos", segundosJogados},
    {"Minutos", minutosJogados},
    {"Horas", horasJogadas},
    {"Total", tempoTotalJogado},
};

void read_what_stays(CInstance* self)
{
    ini_open("SaveGame.sav");
    self->var(idiomaSelecionado) = ini_read_string("preferencias", "idioma", "ingles");
    for (const StoredTime& time : storedTimes)
        self->var(time.kept) = ini_read_real("Tempo", time.key, 0);
    ini_close();
}

void write_what_stays(CInstance* self)
{
    const Value language = self->var(idiomaSelecionado).get();
    ini_open("SaveGame.sav");
    ini_write_string("preferencias", "idioma", language.text());
    ini_write_string("preferencias", "tutorial", "false");
    for (const StoredTime& time : storedTimes)
        ini_write_real("Tempo", time.key, self->var(time.kept));
    ini_close();
    idioma = language;
}

}  // namespace

RValue& vxl_Script_scr_recomeca(CInstance* self, CInstance* other, RValue& result, int, RValue**)
{
    Frame frame(self, other);
    // The title's menu is not up yet.
    if (!passaTela) return result;
    read_what_stays(self);
    if (file_exists("SaveGame.sav")) file_delete("SaveGame.sav");
    // A file that could not be deleted stays as it was.
    if (!file_exists("SaveGame.sav")) write_what_stays(self);
    fade_to(room_personagem);
    return result;
}
