// Buffers of bytes, called as scripts call them.

#include <string>

#include "Files/Data/Buffer.h"
#include "tests/Files/IO/support_Folders.h"

namespace {

class Buffers : public FoldersTest {
protected:
    double New(double size, double type, double alignment = 1)
    {
        return Number("buffer_create", {size, type, alignment});
    }
    double Write(double buffer, double data, const Argument& value)
    {
        return Number("buffer_write", {buffer, data, value});
    }
    double Read(double buffer, double data) { return Number("buffer_read", {buffer, data}); }
    double Tell(double buffer) { return Number("buffer_tell", {buffer}); }
    std::string Hex(double buffer)
    {
        std::string hex;
        char byte[8];
        for (double i = 0; i < Number("buffer_get_size", {buffer}); ++i) {
            std::snprintf(byte, sizeof byte, "%02x",
                          static_cast<int>(Number("buffer_peek", {buffer, i, double(buffer_u8)})));
            hex += byte;
        }
        return hex;
    }
};

TEST_F(Buffers, MakingThem)
{
    for (const double size : {0.0, -1.0}) {
        EXPECT_EQ(New(size, buffer_grow), -1);
        ExpectReport("buffer_create: Illegal size");
    }
    for (const double alignment : {0.0, 3.0, 2048.0}) {
        EXPECT_EQ(New(4, buffer_fixed, alignment), -1);
        ExpectReport("buffer_create: Illegal alignment size");
    }
    EXPECT_EQ(New(4, 5), -1);
    ExpectReport(
        "Unknown buffer type, should be one of buffer_fixed, buffer_grow, buffer_wrap, "
        "buffer_fast, buffer_vbuffer");
    EXPECT_EQ(New(4, buffer_fixed), 0);
    EXPECT_EQ(New(4, buffer_fixed), 1);
    Call("buffer_delete", {0.0});
    EXPECT_EQ(Number("buffer_exists", {0.0}), 0);
    EXPECT_EQ(Read(0, buffer_u8), 0);
    ExpectReport("Illegal Buffer Index");
    EXPECT_EQ(Write(0, buffer_u8, 1.0), -1);
    ExpectReport("Illegal Buffer Index");
    EXPECT_EQ(New(4, buffer_fixed, 1024), 0) << "the first free id";
    EXPECT_EQ(Number("buffer_get_alignment", {0.0}), 1024);
}

TEST_F(Buffers, ValuesOfEachType)
{
    struct Case {
        double data, written, read;
        const char* bytes;
    };
    const Case cases[] = {{buffer_u8, 300, 44, "2c"},
                          {buffer_s8, 200, -56, "c8"},
                          {buffer_u16, -2, 65534, "feff"},
                          {buffer_s16, -2, -2, "feff"},
                          {buffer_u32, 4294967295.0, 4294967295.0, "ffffffff"},
                          {buffer_s32, -2, -2, "feffffff"},
                          {buffer_f32, 0.5, 0.5, "0000003f"},
                          {buffer_f64, 0.1, 0.1, "9a9999999999b93f"},
                          {buffer_bool, 7, 1, "01"},
                          {buffer_u64, 65536, 65536, "0000010000000000"}};
    for (const Case& c : cases) {
        const double width = Number("buffer_sizeof", {c.data}), buffer = New(width, buffer_fixed);
        EXPECT_EQ(Write(buffer, c.data, c.written), 0);
        EXPECT_EQ(Hex(buffer), c.bytes);
        EXPECT_EQ(Write(buffer, c.data, c.written), -2) << "no room";
        EXPECT_EQ(Tell(buffer), width);
        Call("buffer_seek", {buffer, 0.0, 0.0});
        RValue read = Call("buffer_read", {buffer, c.data});
        EXPECT_EQ(REAL_RValue(&read), c.read) << c.data;
        EXPECT_EQ(read.Kind() == VALUE_INT64,
                  c.data == double(buffer_u32) || c.data == double(buffer_u64));
        EXPECT_EQ(Read(buffer, c.data), 0);
        ExpectReport("Attempting to read from outside the buffer, returning 0");
    }
    const double buffer = New(4, buffer_fixed);
    EXPECT_EQ(Write(buffer, buffer_f16, 1.0), -1);
    EXPECT_EQ(Write(buffer, 99, 1.0), -1);
    EXPECT_EQ(Write(buffer, buffer_string, 1.0), -1);
    EXPECT_EQ(Write(buffer, buffer_text, "12345"), -2);
    EXPECT_EQ(Tell(buffer), 0) << "where it was";
    const double fast = New(4, buffer_fast);
    EXPECT_EQ(Write(fast, buffer_u16, 1.0), -1);
    EXPECT_EQ(Write(fast, buffer_u8, 1.0), 0);
}

TEST_F(Buffers, TextsGrowAndAlign)
{
    const double buffer = New(1, buffer_grow);
    EXPECT_EQ(Write(buffer, buffer_string, "ten bytes!"), 0);
    EXPECT_EQ(Number("buffer_get_size", {buffer}), 16);
    EXPECT_EQ(Write(buffer, buffer_text, "end"), 0);
    EXPECT_EQ(Number("buffer_seek", {buffer, 0.0, -3.0}), 0);
    EXPECT_EQ(Text("buffer_read", {buffer, double(buffer_string)}), "ten bytes!");
    EXPECT_EQ(Text("buffer_read", {buffer, double(buffer_text)}), "end");
    EXPECT_EQ(Tell(buffer), 14) << "what was written";
    Call("buffer_resize", {buffer, 4.0});
    EXPECT_EQ(Tell(buffer), 0);
    EXPECT_EQ(Hex(buffer), "74656e20");
    const double aligned = New(16, buffer_fixed, 4);
    Write(aligned, buffer_u8, 1.0);
    Write(aligned, buffer_u32, 2.0);
    EXPECT_EQ(Tell(aligned), 8);
    EXPECT_EQ(Hex(aligned), "01000000020000000000000000000000");
    EXPECT_EQ(Number("buffer_poke", {aligned, 5.0, double(buffer_u16), 0x0A0B * 1.0}), 0);
    EXPECT_EQ(Number("buffer_peek", {aligned, 5.0, double(buffer_u16)}), 0x0A0B);
    EXPECT_EQ(Tell(aligned), 8) << "without alignment, and nothing moves";
    EXPECT_EQ(Number("buffer_poke", {aligned, 15.0, double(buffer_u16), 1.0}), -2);
}

TEST_F(Buffers, WrappingGoesOnAtTheStart)
{
    const double buffer = New(4, buffer_wrap);
    for (double i = 1; i <= 6; ++i) EXPECT_EQ(Write(buffer, buffer_u8, i), 0);
    EXPECT_EQ(Tell(buffer), 2);
    EXPECT_EQ(Hex(buffer), "05060304");
    EXPECT_EQ(Read(buffer, buffer_u32), 0x06050403) << "round the end";
    EXPECT_EQ(Tell(buffer), 2);
    EXPECT_EQ(Number("buffer_seek", {buffer, 1.0, -3.0}), 3);
    EXPECT_EQ(Number("buffer_seek", {buffer, 1.0, 9.0}), 0);
    EXPECT_EQ(Number("buffer_seek", {buffer, 2.0, 1.0}), 3);
    EXPECT_EQ(Number("buffer_seek", {buffer, 7.0, 1.0}), 3) << "no such base";
    EXPECT_EQ(Text("buffer_base64_encode", {buffer, -1.0, 6.0}), "BAUGAwQF");
    // Six bytes do not fit a grid of four: the second round stands two bytes off.
    const double odd = New(6, buffer_wrap, 4);
    Write(odd, buffer_u8, 1.0);
    Write(odd, buffer_u8, 2.0);
    Write(odd, buffer_u8, 3.0);
    EXPECT_EQ(Hex(odd), "010003000200");
}

TEST_F(Buffers, PartsOfThem)
{
    const double buffer = New(3, buffer_grow), other = New(4, buffer_fixed);
    Write(buffer, buffer_text, "abc");
    EXPECT_EQ(Text("buffer_md5", {buffer, 0.0, 3.0}), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(Text("buffer_sha1", {buffer, 0.0, -1.0}), "a9993e364706816aba3e25717850c26c9cd0d89d");
    EXPECT_EQ(Text("buffer_base64_encode", {buffer, -5.0, 2.0}), "YWI=");
    EXPECT_EQ(Text("buffer_base64_encode", {buffer, 9.0, 9.0}), "Yw==") << "the last byte";
    const double decoded = Number("buffer_base64_decode", {"YWJjZA=="});
    EXPECT_EQ(Hex(decoded), "61626364");
    EXPECT_EQ(Hex(Number("buffer_base64_decode", {"YW*jZA=="})), "61") << "up to a strange letter";
    Call("buffer_copy", {buffer, 0.0, 3.0, other, 2.0});
    EXPECT_EQ(Hex(other), "00006162") << "as far as it fits";
    Call("buffer_copy", {other, 2.0, 2.0, buffer, 3.0});
    EXPECT_EQ(Hex(buffer), "616263616200") << "a growing one grows";
    Call("buffer_fill", {buffer, 1.0, double(buffer_u16), 0x0101 * 1.0, 5.0});
    EXPECT_EQ(Hex(buffer), "610101010100");
    Call("buffer_save", {buffer, "b.bin"});
    EXPECT_EQ(Bytes(Saved("b.bin")), std::string("a\1\1\1\1\0", 6));
    Call("buffer_save_ext", {buffer, "part.bin", 1.0, 2.0});
    const double loaded = Number("buffer_load", {"part.bin"});
    EXPECT_EQ(Hex(loaded), "0101");
    Call("buffer_load_partial", {loaded, "b.bin", 0.0, 1.0, 1.0});
    EXPECT_EQ(Hex(loaded), "0161");
    Call("buffer_load_ext", {other, "b.bin", 3.0});
    EXPECT_EQ(Hex(other), "00006161");
    EXPECT_EQ(Number("buffer_load", {"none.bin"}), -1);
    EXPECT_TRUE(Reports().empty());
}

}  // namespace
