// The buttons of the service that keeps achievements and score boards, on platforms that
// have one.

#include "game/Panel.h"

void vxl_Object_oConquistas_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (os_type == desktop) {
        instance_destroy(self);
        return;
    }
    self->var(image_speed) = 0;
    self->var(image_index) = 0;
}

void vxl_Object_oConquistas_Mouse_Enter(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (os_type == mobile) point_at(self);
}

void show_achievements(CInstance* self)
{
    if (instance_exists(self, oConquistas)) oConquistas.var(image_index) = 0;
    if (achievement_login_status())
        achievement_show_achievements();
    else
        achievement_login();
}

void show_score_boards(CInstance* self)
{
    if (instance_exists(self, oRankings)) oRankings.var(image_index) = 0;
    if (achievement_login_status())
        achievement_show_leaderboards();
    else
        achievement_login();
}
