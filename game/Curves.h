#pragma once
// Curves of movement, after Robert Penner's easing equations: the place at time `t` of a
// way that starts at `b`, is `c` long, and takes the time `d`.

double ease_in_quad(double t, double b, double c, double d);    // slow at first
double ease_out_quad(double t, double b, double c, double d);   // slow at last
double ease_out_cubic(double t, double b, double c, double d);  // slower still at last
