#pragma once
// Built-ins that game code calls as plain functions with native arguments. Their
// meaning is that of the built-in of the same name. Included by Seam.h.

// A point, absolute or beside the acting instance.
struct Place {
    double x, y;
    bool relative;
};
inline constexpr Place here{0, 0, true};  // where the acting instance stands
constexpr Place beside(double dx, double dy)
{
    return {dx, dy, true};
}
constexpr Place at(double px, double py)
{
    return {px, py, false};
}

// ---- collision
bool place_free(CInstance* self, double px, double py, Here line = Here::current());
bool place_meeting(CInstance* self, double px, double py, Target what, Here line = Here::current());
bool position_meeting(CInstance* self, double px, double py, Target what,
                      Here line = Here::current());

// ---- actions; each sets the relative flag of its place first
bool action_if_aligned(CInstance* self, double hsnap, double vsnap, Here line = Here::current());
bool action_if_empty(CInstance* self, Place place, bool allObjects, Here line = Here::current());
bool action_if_object(CInstance* self, Object object, Place place, Here line = Here::current());
CInstance* action_create_object(CInstance* self, Object object, Place place,
                                Here line = Here::current());
void action_kill_object(CInstance* self, Here line = Here::current());
void action_set_relative(bool relative, Here line = Here::current());
// `directions`: nine characters, "0" or "1", of the grid 225 270 315 180 stop 0 135 90 45.
// The speed is absolute: the relative flag is cleared first.
void action_move(CInstance* self, const char* directions, double speedPixels,
                 Here line = Here::current());

// ---- instances
CInstance* instance_create(double px, double py, Object object, Here line = Here::current());
void instance_destroy(CInstance* instance, Here line = Here::current());
void instance_destroy(CInstance* self, Object object, Here line = Here::current());
bool instance_exists(CInstance* self, Target what, Here line = Here::current());

// ---- the save file; text "section", "key", and the value of an absent key
void ini_open(const char* name, Here line = Here::current());
double ini_read_real(const char* section, const char* key, double absent,
                     Here line = Here::current());
void ini_write_real(const char* section, const char* key, double value,
                    Here line = Here::current());

// ---- drawing
void draw_self(CInstance* self, Here line = Here::current());
void draw_sprite(CInstance* self, Sprite sprite, double frame, double px, double py,
                 Here line = Here::current());
void draw_set_colour(uint32_t colour, Here line = Here::current());
void draw_set_alpha(double alpha, Here line = Here::current());
void draw_set_font(Font font, Here line = Here::current());
void draw_set_halign(int32_t align, Here line = Here::current());  // fa_left, fa_center, fa_right
void draw_set_valign(int32_t align, Here line = Here::current());  // fa_top, fa_middle, fa_bottom
void draw_text(double px, double py, const char* text, Here line = Here::current());
void draw_rectangle(double x1, double y1, double x2, double y2, bool outline,
                    Here line = Here::current());

// ---- surfaces; false for one that does not exist, and with nothing to go back to
bool surface_set_target(int32_t surface, Here line = Here::current());
bool surface_reset_target(Here line = Here::current());

// ---- input, chance, messages, the game
bool keyboard_check(int32_t key, Here line = Here::current());
double irandom(double n, Here line = Here::current());
// One of the values, each as likely; 0 of none.
double choose(std::initializer_list<double> values, Here line = Here::current());
double ord(const char* text, Here line = Here::current());  // code point of the first character
void show_debug_message(const char* text, Here line = Here::current());
void show_debug_message(const Value& value, Here line = Here::current());
void game_end(Here line = Here::current());
