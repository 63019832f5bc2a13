#pragma once
// A piece of music as text: voices, parts made of bars, and the order of the parts.
// content/README.md tells the form.

#include <map>
#include <string>
#include <vector>

namespace music {

// What sounds: from, until and how loud. Drums have a stroke instead of a pitch.
struct Note {
    double start, length;  // beats from the beginning of the piece
    int key;               // semitones, 69 is the a of 440 Hz; of a drum its letter
    double loudness;       // 0 to 1
};

struct Voice {
    std::string name, patch;
    double level = 0.3;   // 0 to 1
    double pan = 0;       // -1 left to 1 right
    double room = 0.2;    // share that goes through the reverberation
    int octave = 4;       // in which a chord begins
    std::string pattern;  // of a bar, played on its chords; may be empty
    std::vector<Note> notes;
};

struct Score {
    double tempo = 100;  // beats a minute
    double barBeats = 4;
    double loudness = 0.1;  // root of the mean square of the whole
    double swing = 0;       // by how much of itself every second eighth comes late
    bool once = false;      // a signal that ends, not a loop
    double beats = 0;       // of the whole piece
    std::vector<Voice> voices;
};

// Throws std::runtime_error with file, line and what was expected.
Score Score_Read(const std::string& path);

}  // namespace music
