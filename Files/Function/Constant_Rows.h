#pragma once
// The rows of the constant table, by family.

#include "Files/Function/Function_Registry.h"

struct ConstantRow {
    const char* name;
    double value;
};
struct ConstantFamily {
    const ConstantRow* rows;
    int32_t count;
};

// values
inline constexpr ConstantRow kValuesRows[] = {
    {"self", -1},  {"other", -2}, {"all", -3},  {"noone", -4},     {"global", -5},
    {"local", -7}, {"true", 1},   {"false", 0}, {"pi", kScriptPi},
};
// primitives
inline constexpr ConstantRow kPrimitivesRows[] = {
    {"pr_pointlist", 1},    {"pr_linelist", 2},      {"pr_linestrip", 3},
    {"pr_trianglelist", 4}, {"pr_trianglestrip", 5}, {"pr_trianglefan", 6},
};
// colours, as 0xBBGGRR
inline constexpr ConstantRow kColourRows[] = {
    {"c_aqua", 0xFFFF00},   {"c_black", 0x000000},   {"c_blue", 0xFF0000},   {"c_dkgray", 0x404040},
    {"c_dkgrey", 0x404040}, {"c_fuchsia", 0xFF00FF}, {"c_gray", 0x808080},   {"c_grey", 0x808080},
    {"c_green", 0x008000},  {"c_lime", 0x00FF00},    {"c_ltgray", 0xC0C0C0}, {"c_ltgrey", 0xC0C0C0},
    {"c_maroon", 0x000080}, {"c_navy", 0x800000},    {"c_olive", 0x008080},  {"c_orange", 0x40A0FF},
    {"c_purple", 0x800080}, {"c_red", 0x0000FF},     {"c_silver", 0xC0C0C0}, {"c_teal", 0x808000},
    {"c_white", 0xFFFFFF},  {"c_yellow", 0x00FFFF},
};
// blend modes and the numbers of their factors
inline constexpr ConstantRow kBlendRows[] = {
    {"bm_normal", 0},
    {"bm_add", 1},
    {"bm_max", 2},
    {"bm_subtract", 3},
    {"bm_zero", 1},
    {"bm_one", 2},
    {"bm_src_color", 3},
    {"bm_src_colour", 3},
    {"bm_inv_src_color", 4},
    {"bm_inv_src_colour", 4},
    {"bm_src_alpha", 5},
    {"bm_inv_src_alpha", 6},
    {"bm_dest_alpha", 7},
    {"bm_inv_dest_alpha", 8},
    {"bm_dest_color", 9},
    {"bm_dest_colour", 9},
    {"bm_inv_dest_color", 10},
    {"bm_inv_dest_colour", 10},
    {"bm_src_alpha_sat", 11},
};
// texture filters and mipmaps
inline constexpr ConstantRow kTextureRows[] = {
    {"tf_point", 0}, {"tf_linear", 1}, {"tf_anisotropic", 2},
    {"mip_off", 0},  {"mip_on", 1},    {"mip_markedonly", 2},
};
// sound
inline constexpr ConstantRow kSoundRows[] = {
    {"audio_falloff_none", 0},
    {"audio_falloff_inverse_distance", 1},
    {"audio_falloff_inverse_distance_clamped", 2},
    {"audio_falloff_linear_distance", 3},
    {"audio_falloff_linear_distance_clamped", 4},
    {"audio_falloff_exponent_distance", 5},
    {"audio_falloff_exponent_distance_clamped", 6},
    {"audio_old_system", 0},
    {"audio_new_system", 1},
    {"audio_mono", 0},
    {"audio_stereo", 1},
    {"audio_3d", 2},
};
// text alignment and file attributes
inline constexpr ConstantRow kAlignmentRows[] = {
    {"fa_left", 0},    {"fa_center", 1},   {"fa_right", 2},      {"fa_top", 0},
    {"fa_middle", 1},  {"fa_bottom", 2},   {"fa_readonly", 1},   {"fa_hidden", 2},
    {"fa_sysfile", 4}, {"fa_volumeid", 8}, {"fa_directory", 16}, {"fa_archive", 32},
};
// mouse buttons
inline constexpr ConstantRow kMouseButtonsRows[] = {
    {"mb_any", -1}, {"mb_none", 0}, {"mb_left", 1}, {"mb_right", 2}, {"mb_middle", 3},
};
// keys
inline constexpr ConstantRow kKeysRows[] = {
    {"vk_nokey", 0},        {"vk_anykey", 1},     {"vk_backspace", 8}, {"vk_tab", 9},
    {"vk_return", 13},      {"vk_enter", 13},     {"vk_shift", 16},    {"vk_control", 17},
    {"vk_alt", 18},         {"vk_pause", 19},     {"vk_escape", 27},   {"vk_space", 32},
    {"vk_pageup", 33},      {"vk_pagedown", 34},  {"vk_end", 35},      {"vk_home", 36},
    {"vk_left", 37},        {"vk_up", 38},        {"vk_right", 39},    {"vk_down", 40},
    {"vk_printscreen", 44}, {"vk_insert", 45},    {"vk_delete", 46},   {"vk_numpad0", 96},
    {"vk_numpad1", 97},     {"vk_numpad2", 98},   {"vk_numpad3", 99},  {"vk_numpad4", 100},
    {"vk_numpad5", 101},    {"vk_numpad6", 102},  {"vk_numpad7", 103}, {"vk_numpad8", 104},
    {"vk_numpad9", 105},    {"vk_multiply", 106}, {"vk_add", 107},     {"vk_subtract", 109},
    {"vk_decimal", 110},    {"vk_divide", 111},   {"vk_f1", 112},      {"vk_f2", 113},
    {"vk_f3", 114},         {"vk_f4", 115},       {"vk_f5", 116},      {"vk_f6", 117},
    {"vk_f7", 118},         {"vk_f8", 119},       {"vk_f9", 120},      {"vk_f10", 121},
    {"vk_f11", 122},        {"vk_f12", 123},      {"vk_lshift", 160},  {"vk_rshift", 161},
    {"vk_lcontrol", 162},   {"vk_rcontrol", 163}, {"vk_lalt", 164},    {"vk_ralt", 165},
};
// gamepads
inline constexpr ConstantRow kGamepadsRows[] = {
    {"gp_face1", 0x8001},      {"gp_face2", 0x8002},      {"gp_face3", 0x8003},
    {"gp_face4", 0x8004},      {"gp_shoulderl", 0x8005},  {"gp_shoulderr", 0x8006},
    {"gp_shoulderlb", 0x8007}, {"gp_shoulderrb", 0x8008}, {"gp_select", 0x8009},
    {"gp_start", 0x800A},      {"gp_stickl", 0x800B},     {"gp_stickr", 0x800C},
    {"gp_padu", 0x800D},       {"gp_padd", 0x800E},       {"gp_padl", 0x800F},
    {"gp_padr", 0x8010},       {"gp_axislh", 0x8011},     {"gp_axislv", 0x8012},
    {"gp_axisrh", 0x8013},     {"gp_axisrv", 0x8014},
};
// events
inline constexpr ConstantRow kEventsRows[] = {
    {"ev_create", 0},     {"ev_destroy", 1},  {"ev_alarm", 2},       {"ev_step", 3},
    {"ev_collision", 4},  {"ev_keyboard", 5}, {"ev_mouse", 6},       {"ev_other", 7},
    {"ev_draw", 8},       {"ev_keypress", 9}, {"ev_keyrelease", 10}, {"ev_trigger", 11},
    {"ev_cleanup", 12},   {"ev_gesture", 13}, {"ev_pre_create", 14}, {"ev_step_normal", 0},
    {"ev_step_begin", 1}, {"ev_step_end", 2},
};
// mouse events
inline constexpr ConstantRow kMouseEventsRows[] = {
    {"ev_left_button", 0},
    {"ev_right_button", 1},
    {"ev_middle_button", 2},
    {"ev_no_button", 3},
    {"ev_left_press", 4},
    {"ev_right_press", 5},
    {"ev_middle_press", 6},
    {"ev_left_release", 7},
    {"ev_right_release", 8},
    {"ev_middle_release", 9},
    {"ev_mouse_enter", 10},
    {"ev_mouse_leave", 11},
    {"ev_any_press", 12},
    {"ev_any_release", 13},
    {"ev_joystick1_left", 16},
    {"ev_joystick1_right", 17},
    {"ev_joystick1_up", 18},
    {"ev_joystick1_down", 19},
    {"ev_joystick1_button1", 21},
    {"ev_joystick1_button2", 22},
    {"ev_joystick1_button3", 23},
    {"ev_joystick1_button4", 24},
    {"ev_joystick1_button5", 25},
    {"ev_joystick1_button6", 26},
    {"ev_joystick1_button7", 27},
    {"ev_joystick1_button8", 28},
    {"ev_joystick2_left", 31},
    {"ev_joystick2_right", 32},
    {"ev_joystick2_up", 33},
    {"ev_joystick2_down", 34},
    {"ev_joystick2_button1", 36},
    {"ev_joystick2_button2", 37},
    {"ev_joystick2_button3", 38},
    {"ev_joystick2_button4", 39},
    {"ev_joystick2_button5", 40},
    {"ev_joystick2_button6", 41},
    {"ev_joystick2_button7", 42},
    {"ev_joystick2_button8", 43},
    {"ev_global_left_button", 50},
    {"ev_global_right_button", 51},
    {"ev_global_middle_button", 52},
    {"ev_global_left_press", 53},
    {"ev_global_right_press", 54},
    {"ev_global_middle_press", 55},
    {"ev_global_left_release", 56},
    {"ev_global_right_release", 57},
    {"ev_global_middle_release", 58},
    {"ev_mouse_wheel_up", 60},
    {"ev_mouse_wheel_down", 61},
};
// other events
inline constexpr ConstantRow kOtherEventsRows[] = {
    {"ev_outside", 0},         {"ev_boundary", 1},        {"ev_game_start", 2},
    {"ev_game_end", 3},        {"ev_room_start", 4},      {"ev_room_end", 5},
    {"ev_no_more_lives", 6},   {"ev_animation_end", 7},   {"ev_end_of_path", 8},
    {"ev_no_more_health", 9},  {"ev_user0", 10},          {"ev_user1", 11},
    {"ev_user2", 12},          {"ev_user3", 13},          {"ev_user4", 14},
    {"ev_user5", 15},          {"ev_user6", 16},          {"ev_user7", 17},
    {"ev_user8", 18},          {"ev_user9", 19},          {"ev_user10", 20},
    {"ev_user11", 21},         {"ev_user12", 22},         {"ev_user13", 23},
    {"ev_user14", 24},         {"ev_user15", 25},         {"ev_outside_view0", 40},
    {"ev_outside_view1", 41},  {"ev_outside_view2", 42},  {"ev_outside_view3", 43},
    {"ev_outside_view4", 44},  {"ev_outside_view5", 45},  {"ev_outside_view6", 46},
    {"ev_outside_view7", 47},  {"ev_boundary_view0", 50}, {"ev_boundary_view1", 51},
    {"ev_boundary_view2", 52}, {"ev_boundary_view3", 53}, {"ev_boundary_view4", 54},
    {"ev_boundary_view5", 55}, {"ev_boundary_view6", 56}, {"ev_boundary_view7", 57},
};
// asynchronous events
inline constexpr ConstantRow kAsynchronousEventsRows[] = {
    {"ev_async", 62},
    {"ev_async_web_image_load", 60},
    {"ev_async_web", 62},
    {"ev_async_dialog", 63},
    {"ev_dialog", 63},
    {"ev_iap", 66},
    {"ev_cloud", 67},
    {"ev_networking", 68},
    {"ev_steam", 69},
    {"ev_social", 70},
    {"ev_push_notification", 71},
    {"ev_save_load", 72},
    {"ev_audio_recording", 73},
    {"ev_audio_playback", 74},
    {"ev_system_event", 75},
};
// draw events
inline constexpr ConstantRow kDrawEventsRows[] = {
    {"ev_draw_normal", 0}, {"ev_gui", 64},     {"ev_draw_begin", 72}, {"ev_draw_end", 73},
    {"ev_gui_begin", 74},  {"ev_gui_end", 75}, {"ev_draw_pre", 76},   {"ev_draw_post", 77},
};
// external calls
inline constexpr ConstantRow kExternalCallsRows[] = {
    {"ty_real", 0},
    {"ty_string", 1},
    {"dll_cdecl", 0},
    {"dll_stdcall", 1},
};
// mouse cursors
inline constexpr ConstantRow kMouseCursorsRows[] = {
    {"cr_default", 0},     {"cr_none", -1},      {"cr_arrow", -2},      {"cr_cross", -3},
    {"cr_beam", -4},       {"cr_size_nesw", -6}, {"cr_size_ns", -7},    {"cr_size_nwse", -8},
    {"cr_size_we", -9},    {"cr_uparrow", -10},  {"cr_hourglass", -11}, {"cr_drag", -12},
    {"cr_nodrop", -13},    {"cr_hsplit", -14},   {"cr_vsplit", -15},    {"cr_multidrag", -16},
    {"cr_sqlwait", -17},   {"cr_no", -18},       {"cr_appstart", -19},  {"cr_help", -20},
    {"cr_handpoint", -21}, {"cr_size_all", -22},
};
// particles and effects
inline constexpr ConstantRow kParticleRows[] = {
    {"pt_shape_pixel", 0},
    {"pt_shape_disk", 1},
    {"pt_shape_square", 2},
    {"pt_shape_line", 3},
    {"pt_shape_star", 4},
    {"pt_shape_circle", 5},
    {"pt_shape_ring", 6},
    {"pt_shape_sphere", 7},
    {"pt_shape_flare", 8},
    {"pt_shape_spark", 9},
    {"pt_shape_explosion", 10},
    {"pt_shape_cloud", 11},
    {"pt_shape_smoke", 12},
    {"pt_shape_snow", 13},
    {"ps_distr_linear", 0},
    {"ps_distr_gaussian", 1},
    {"ps_distr_invgaussian", 2},
    {"ps_shape_rectangle", 0},
    {"ps_shape_ellipse", 1},
    {"ps_shape_diamond", 2},
    {"ps_shape_line", 3},
    {"ps_force_constant", 0},
    {"ps_force_linear", 1},
    {"ps_force_quadratic", 2},
    {"ps_deflect_horizontal", 0},
    {"ps_deflect_vertical", 1},
    {"ps_change_motion", 0},
    {"ps_change_shape", 1},
    {"ps_change_all", 2},
    {"ef_explosion", 0},
    {"ef_ring", 1},
    {"ef_ellipse", 2},
    {"ef_firework", 3},
    {"ef_smoke", 4},
    {"ef_smokeup", 5},
    {"ef_star", 6},
    {"ef_spark", 7},
    {"ef_flare", 8},
    {"ef_cloud", 9},
    {"ef_rain", 10},
    {"ef_snow", 11},
};
// displays and systems
inline constexpr ConstantRow kSystemRows[] = {
    {"display_landscape", 0},
    {"display_landscape_flipped", 1},
    {"display_portrait", 2},
    {"display_portrait_flipped", 3},
    {"os_unknown", -1},
    {"os_windows", 0},
    {"os_win32", 0},
    {"os_macosx", 1},
    {"os_psp", 2},
    {"os_ios", 3},
    {"os_android", 4},
    {"os_symbian", 5},
    {"os_linux", 6},
    {"os_winphone", 7},
    {"os_tizen", 8},
    {"os_win8native", 9},
    {"os_psvita", 12},
    {"os_ps4", 14},
    {"os_xboxone", 15},
};
// physics
inline constexpr ConstantRow kPhysicsRows[] = {
    {"phy_joint_anchor_1_x", 0},
    {"phy_joint_anchor_1_y", 1},
    {"phy_joint_anchor_2_x", 2},
    {"phy_joint_anchor_2_y", 3},
    {"phy_joint_reaction_force_x", 4},
    {"phy_joint_reaction_force_y", 5},
    {"phy_joint_reaction_torque", 6},
    {"phy_joint_motor_speed", 7},
    {"phy_joint_angle", 8},
    {"phy_joint_motor_torque", 9},
    {"phy_joint_max_motor_torque", 10},
    {"phy_joint_translation", 11},
    {"phy_joint_speed", 12},
    {"phy_joint_motor_force", 13},
    {"phy_joint_max_motor_force", 14},
    {"phy_joint_length_1", 15},
    {"phy_joint_length_2", 16},
    {"phy_joint_damping_ratio", 17},
    {"phy_joint_frequency", 18},
    {"phy_joint_lower_angle_limit", 19},
    {"phy_joint_upper_angle_limit", 20},
    {"phy_joint_angle_limits", 21},
    {"phy_joint_max_length", 22},
    {"phy_joint_max_torque", 23},
    {"phy_joint_max_force", 24},
    {"phy_debug_render_shapes", 1},
    {"phy_debug_render_joints", 2},
    {"phy_debug_render_coms", 4},
    {"phy_debug_render_aabb", 8},
    {"phy_debug_render_obb", 16},
    {"phy_debug_render_core_shapes", 32},
    {"phy_debug_render_collision_pairs", 64},
};
// matrices
inline constexpr ConstantRow kMatricesRows[] = {
    {"matrix_view", 0},
    {"matrix_projection", 1},
    {"matrix_world", 2},
};
// overlay and leaderboards
inline constexpr ConstantRow kOverlayRows[] = {
    {"ov_friends", 0},      {"ov_community", 1},      {"ov_players", 2},
    {"ov_settings", 3},     {"ov_gamegroup", 4},      {"ov_achievements", 5},
    {"lb_sort_none", 0},    {"lb_sort_ascending", 1}, {"lb_sort_descending", 2},
    {"lb_disp_none", 0},    {"lb_disp_numeric", 1},   {"lb_disp_time_sec", 2},
    {"lb_disp_time_ms", 3},
};
// workshop content
inline constexpr ConstantRow kWorkshopContentRows[] = {
    {"ugc_filetype_community", 0},
    {"ugc_filetype_microtrans", 1},
    {"ugc_list_Published", 0},
    {"ugc_list_VotedOn", 1},
    {"ugc_list_VotedUp", 2},
    {"ugc_list_VotedDown", 3},
    {"ugc_list_WillVoteLater", 4},
    {"ugc_list_Favorited", 5},
    {"ugc_list_Subscribed", 6},
    {"ugc_list_UsedOrPlayed", 7},
    {"ugc_list_Followed", 8},
    {"ugc_query_RankedByVote", 0},
    {"ugc_query_RankedByPublicationDate", 1},
    {"ugc_query_AcceptedForGameRankedByAcceptanceDate", 2},
    {"ugc_query_RankedByTrend", 3},
    {"ugc_query_FavoritedByFriendsRankedByPublicationDate", 4},
    {"ugc_query_CreatedByFriendsRankedByPublicationDate", 5},
    {"ugc_query_RankedByNumTimesReported", 6},
    {"ugc_query_CreatedByFollowedUsersRankedByPublicationDate", 7},
    {"ugc_query_NotYetRated", 8},
    {"ugc_query_RankedByTotalVotesAsc", 9},
    {"ugc_query_RankedByVotesUp", 10},
    {"ugc_query_RankedByTextSearch", 11},
    {"ugc_match_Items", 0},
    {"ugc_match_Items_Mtx", 1},
    {"ugc_match_Items_ReadyToUse", 2},
    {"ugc_match_Collections", 3},
    {"ugc_match_Artwork", 4},
    {"ugc_match_Videos", 5},
    {"ugc_match_Screenshots", 6},
    {"ugc_match_AllGuides", 7},
    {"ugc_match_WebGuides", 8},
    {"ugc_match_IntegratedGuides", 9},
    {"ugc_match_UsableInGame", 10},
    {"ugc_match_ControllerBindings", 11},
};
// time zones
inline constexpr ConstantRow kTimeZonesRows[] = {
    {"timezone_local", 0},
    {"timezone_utc", 1},
};
// buffers
inline constexpr ConstantRow kBuffersRows[] = {
    {"buffer_fixed", 0},      {"buffer_grow", 1},          {"buffer_wrap", 2},
    {"buffer_fast", 3},       {"buffer_vbuffer", 4},       {"buffer_u8", 1},
    {"buffer_s8", 2},         {"buffer_u16", 3},           {"buffer_s16", 4},
    {"buffer_u32", 5},        {"buffer_s32", 6},           {"buffer_f16", 7},
    {"buffer_f32", 8},        {"buffer_f64", 9},           {"buffer_bool", 10},
    {"buffer_string", 11},    {"buffer_u64", 12},          {"buffer_text", 13},
    {"buffer_seek_start", 0}, {"buffer_seek_relative", 1}, {"buffer_seek_end", 2},
};
// containers
inline constexpr ConstantRow kContainersRows[] = {
    {"ds_type_map", 1},   {"ds_type_list", 2}, {"ds_type_stack", 3},
    {"ds_type_queue", 4}, {"ds_type_grid", 5}, {"ds_type_priority", 6},
};

template <int N>
constexpr ConstantFamily Family_Of(const ConstantRow (&rows)[N])
{
    return {rows, N};
}
inline constexpr ConstantFamily kConstantFamilies[] = {
    Family_Of(kValuesRows),
    Family_Of(kPrimitivesRows),
    Family_Of(kColourRows),
    Family_Of(kBlendRows),
    Family_Of(kTextureRows),
    Family_Of(kSoundRows),
    Family_Of(kAlignmentRows),
    Family_Of(kMouseButtonsRows),
    Family_Of(kKeysRows),
    Family_Of(kGamepadsRows),
    Family_Of(kEventsRows),
    Family_Of(kMouseEventsRows),
    Family_Of(kOtherEventsRows),
    Family_Of(kAsynchronousEventsRows),
    Family_Of(kDrawEventsRows),
    Family_Of(kExternalCallsRows),
    Family_Of(kMouseCursorsRows),
    Family_Of(kParticleRows),
    Family_Of(kSystemRows),
    Family_Of(kPhysicsRows),
    Family_Of(kMatricesRows),
    Family_Of(kOverlayRows),
    Family_Of(kWorkshopContentRows),
    Family_Of(kTimeZonesRows),
    Family_Of(kBuffersRows),
    Family_Of(kContainersRows),
};
