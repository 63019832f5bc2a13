// The clock: the whole time of play and the time of the present level, in seconds. It
// is stored only when a level is finished; a level that is left takes its time with it.

#include "game/Rules.h"

void vxl_Object_oClock_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    ini_open("SaveGame.sav");
    self->var(segundos) = ini_read_real("Tempo", "Segundos", 0);
    self->var(minutos) = ini_read_real("Tempo", "Minutos", 0);
    self->var(horas) = ini_read_real("Tempo", "Horas", 0);
    self->var(tempoTotal) = ini_read_real("Tempo", "Total", 0);
    ini_close();

    const bool first = self->var(tempoTotal) == 0;
    self->var(levelTime) = 0;
    self->var(seconds) = first ? 0 : double(self->var(segundos));
    self->var(minutes) = first ? 0 : double(self->var(minutos));
    self->var(hours) = first ? 0 : double(self->var(horas));
    self->var(totalTime) = first ? 0 : double(self->var(tempoTotal));
    self->var(alarm)[0] = double(room_speed);
    contaTempo = 1;
}

// Once a second, while time counts.
void vxl_Object_oClock_Alarm_0(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!contaTempo) return;
    self->var(seconds) += 1;
    self->var(levelTime) += 1;
    self->var(totalTime) += 1;
    if (self->var(seconds) > 59) {
        self->var(seconds) = 0;
        self->var(minutes) += 1;
    }
    if (self->var(minutes) > 59) {
        self->var(minutes) = 0;
        self->var(hours) += 1;
    }
    self->var(alarm)[0] = double(room_speed);
}
