#pragma once
// Cut-out animation: a table that moves, turns, scales and shows the named groups
// of a drawing. One table serves every drawing with the same groups.
//
//   size 52 52                          the area shown, in units of the drawing
//   joint root     pivot=26,39          a part without a picture, to hang others on
//   part leg-far   pivot=hip            drawn in this order, the first at the back
//   part arm-near  parent=body pivot=21,30 group=arm
//   animation walk length=4 loop
//     leg-far   turn   0=30:out 1=-30 2=-20
//     arm-near  y      0=0 2=-1:hold
//   animation push length=4 loop like=walk
//
// A part shows the group of its own name unless group= names another. It turns and
// scales about its pivot: a point "x,y", or a small marker element of the drawing
// named "pivot-" and the word; without one, about the middle of its group. It
// moves along with its parent, which is named before it.
// Channels: x, y (units, downward), turn (degrees, clockwise), scale, scalex,
// scaley (1 is whole), fade (0 unseen to 1), show (0 or 1, never between).
// A key is time=value, with ":" and the way to the next key: smooth (slow at both
// ends, the default), linear, in (slow at its start), out (slow at its end), hold.
// A loop leads from the last key back to the first. "like" takes over the tracks of
// an earlier animation, which later lines replace one by one.

#include <string>
#include <vector>

namespace pack {

enum class Ease { smooth, linear, in, out, hold };
enum class Channel { x, y, turn, scaleX, scaleY, scale, fade, show };

struct CutoutKey {
    double time = 0, value = 0;
    Ease ease = Ease::smooth;
};

struct CutoutTrack {
    int part = 0;
    Channel channel = Channel::x;
    std::vector<CutoutKey> keys;  // rising in time
};

struct CutoutPart {
    std::string name;
    std::string group;   // empty for a joint
    int parent = -1;     // index of an earlier part
    std::string marker;  // element whose middle is the pivot; empty with a fixed pivot
    bool fixedPivot = false;
    double pivotX = 0, pivotY = 0;
    int line = 0;
};

struct CutoutAnimation {
    std::string name;
    double length = 1;
    bool loop = false;
    std::vector<CutoutTrack> tracks;
};

struct CutoutTable {
    std::string file;  // as named in messages
    double width = 0, height = 0;
    std::vector<CutoutPart> parts;
    std::vector<CutoutAnimation> animations;
};

// How a part stands at one moment.
struct CutoutPose {
    double x = 0, y = 0, turn = 0, scaleX = 1, scaleY = 1, fade = 1;
    bool show = true;
};

// False with "file:line: what was expected" in `error`.
bool Cutouts_Parse(const std::string& file, const std::string& text, CutoutTable& out,
                   std::string& error);

const CutoutAnimation* Cutouts_Find(const CutoutTable& table, const std::string& name);

// The moment of frame `frame` of `frames`: even steps, over the whole length for a
// loop, from the first moment to the last otherwise.
double Cutouts_Moment(const CutoutAnimation& animation, int frame, int frames);

// One pose for each part, in the order of the table.
std::vector<CutoutPose> Cutouts_Pose(const CutoutTable& table, const CutoutAnimation& animation,
                                     double moment);

}  // namespace pack
