// Turning a page of the map: the old page slides out and the new one in. The slide is
// two pictures, one of each room; the new room runs under it, unseen.

#include "game/Curves.h"
#include "game/Gamepad.h"

namespace {

constexpr double slidesASecond = 3;

double picture_of_screen()
{
    const double picture = surface_create(room_width, room_height);
    surface_copy(picture, 0, 0, application_surface);
    return picture;
}

void start_slide(CInstance* self, double page)
{
    self->var(currentframe) = 0;
    self->var(maxframes) = room_speed / slidesASecond;
    self->var(persistent) = 1;
    self->var(sur_oldroom) = picture_of_screen();
    room_goto(page);
    instance_deactivate_all(self, true);
}

void draw_if_it_exists(double picture, double across)
{
    if (surface_exists(picture)) draw_surface(picture, across, 0);
}

// `way` is -1 where the old page leaves to the left, 1 to the right.
void draw_slide(CInstance* self, double way)
{
    const double passed = self->var(currentframe);
    if (passed < 1) return;
    if (passed == 1) {
        draw_if_it_exists(self->var(sur_oldroom), 0);
        return;
    }
    const double d = ease_out_quad(passed, 0, room_width, self->var(maxframes));
    draw_if_it_exists(self->var(sur_oldroom), way * d);
    draw_if_it_exists(self->var(sur_newroom), way * (d - room_width));
}

}  // namespace

// ==== the slides: on, and back

void vxl_Object_oTransicaoSlide_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    start_slide(self, room_next(room));
}

void vxl_Object_oTransicaoSlideVolta_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    start_slide(self, room_previous(room));
}

void vxl_Object_oTransicaoSlide_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(currentframe) += 1;
    if (self->var(currentframe) > self->var(maxframes)) {
        instance_activate_all();
        instance_destroy(self);
    }
    // By now the new room has been drawn once.
    if (self->var(currentframe) == 2) self->var(sur_newroom) = picture_of_screen();
}

void vxl_Object_oTransicaoSlide_Draw_Gui(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    draw_slide(self, -1);
}

void vxl_Object_oTransicaoSlideVolta_Draw_Gui(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    draw_slide(self, 1);
}

void vxl_Object_oTransicaoSlide_Destroy(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    surface_free(self->var(sur_oldroom));
    surface_free(self->var(sur_newroom));
}

// ==== the arrows at the sides of a page. One is shown pressed while the mouse holds it.

void vxl_Object_oAvancaMundo_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    set_up_gamepad(self);
}

void vxl_Object_oAvancaMundo_Mouse_NoButton(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_index) = 0;
}

void vxl_Object_oAvancaMundo_Mouse_LeftPressed(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_index) = 1;
}

void vxl_Object_oAvancaMundo_Mouse_LeftReleased(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    click();
    instance_create(0, 0, oTransicaoSlide);
}

void vxl_Object_oVoltaMundo_Mouse_LeftReleased(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    click();
    instance_create(0, 0, oTransicaoSlideVolta);
}

void vxl_Object_oAvancaMundo_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!gamepad_button_check_pressed(self->var(pad), gp_shoulderr)) return;
    click();
    instance_create(0, 0, oTransicaoSlide);
}

void vxl_Object_oVoltaMundo_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!gamepad_button_check_pressed(self->var(pad), gp_shoulderl)) return;
    click();
    instance_create(0, 0, oTransicaoSlideVolta);
}
