// Maps as JSON, and as files that only one computer opens.

#include <string>

#include "Files/Data/Digests.h"
#include "tests/Files/IO/support_Folders.h"

namespace {

class Json : public FoldersTest {
protected:
    std::string Encoded(double map) { return Text("json_encode", {map}); }
    // What comes back of a text, encoded again.
    std::string Again(const char* text)
    {
        const double map = Number("json_decode", {text});
        return map < 0 ? "-1" : Encoded(map);
    }
    // As what another computer has.
    std::string Forged(const std::string& json)
    {
        const std::string whole = Bytes(Saved("map.dat"));
        return whole.substr(0, 80) + Base64_Encode(json.c_str(), json.size() + 1).c_str();
    }
};

TEST_F(Json, ValuesOfEachKind)
{
    const double map = Number("ds_map_create", {1.0});
    RValue truth(1.0), int32(0.0), int64(0.0), array, none;
    truth.kind = VALUE_BOOL;
    int32.i32 = -3;
    int32.kind = VALUE_INT32;
    int64.i64 = int64_t{1} << 60;
    int64.kind = VALUE_INT64;
    const RValue cell(2.0);
    SET_RValue(&array, &cell, 1);
    SET_RValue(&array, &cell, kArrayRowStride);
    EXPECT_EQ(Encoded(map), "{ }");
    Call("ds_map_add", {map, "a", 1.5});
    EXPECT_EQ(Encoded(map), "{ \"a\": 1.500000 }");
    Call("ds_map_add", {map, 2.6, "\b\n\r\t\"\\/\f\x01 \xC3\xA9"});
    Call("ds_map_add", {map, "b", &truth});
    Call("ds_map_add", {map, "i", &int32});
    Call("ds_map_add", {map, "j", &int64});
    Call("ds_map_add", {map, "k", &array});
    Call("ds_map_add", {map, "n", &none});
    EXPECT_EQ(Encoded(map),
              "{ \"a\": 1.500000, \"3\": \"\\b\\n\\r\\t\\\"\\\\\\/\\u000c\\u0001 \xC3\xA9\", "
              "\"b\": true, \"i\": -3, \"j\": 1152921504606846976, "
              "\"k\": [ 0.000000, 2.000000, 2.000000 ], \"n\": null }");
    EXPECT_EQ(Text("json_encode", {7.0}), "") << "no such map";
    FREE_RValue(&array);
}

TEST_F(Json, TextsOfAllSorts)
{
    struct Case {
        const char *text, *again;
    };
    for (const Case& c :
         {Case{"hello", "{ \"default\": \"hello\" }"},
          Case{" [1,2] ", "{ \"default\": [ 1.000000, 2.000000 ] }"}, Case{"{}", "{ }"},
          Case{" {\"a\":0.1234567}\n", "{ \"a\": 0.123457 }"}, Case{"", "{ \"default\": \"\" }"},
          Case{"{\"a\":null,\"b\":[null,true,\"\"]}", "{ \"b\": [ 0.000000, 1.000000, \"\" ] }"},
          Case{"{\"a\":{\"b\":{\"c\":[[]]}}}", "{ \"a\": { \"b\": { \"c\": [ [ ] ] } } }"},
          Case{"{broken}", "{ \"default\": \"{broken}\" }"}, Case{"{\"a\":}", "-1"},
          Case{"say \"hi\"", "-1"}, Case{"[1,", "{ \"default\": \"[1,\" }"},
          Case{"{\"a\":\"\\u00e9\"}", "{ \"a\": \"\xC3\xA9\" }"}})
        EXPECT_EQ(Again(c.text), c.again) << c.text;
    const double number = Number("json_decode", {3.0});
    EXPECT_EQ(Text("ds_map_find_value", {number, "default"}), "3.00");
    EXPECT_EQ(Again((std::string(100000, '[') + std::string(100000, ']')).c_str()).substr(0, 15),
              "{ \"default\": \"[")
        << "too deep for a table, so a text";
}

TEST_F(Json, AMapThatHoldsItselfEnds)
{
    const double map = Number("ds_map_create");
    Call("ds_map_add_map", {map, "me", map});
    EXPECT_NE(Encoded(map).find("{ \"me\": null }"), std::string::npos);
}

TEST_F(Json, AFileOpensOnItsOwnComputerAlone)
{
    const double map = Number("json_decode", {"{\"a\":1,\"list\":[{\"b\":2}]}"});
    Call("ds_map_secure_save", {map, "map.dat"});
    const std::string whole = Bytes(Saved("map.dat"));
    // The computer's id is 32 zeros: "0" is 48, so the mark comes from place 16 and is
    // 48 ^ 90 = 106.
    const std::string id(32, '0');
    const std::string marked = id.substr(0, 16) + "106" + id.substr(16);
    const std::string first = Sha1_Text(marked.c_str(), marked.size() + 1).c_str();
    const std::string second = Sha1_Text("106", 4).c_str();
    std::string tag;
    for (size_t at = 0; at < 40; at += 8) tag += first.substr(at, 8) + second.substr(at, 8);
    const std::string json = Encoded(map);
    EXPECT_EQ(whole, tag + Base64_Encode(json.c_str(), json.size() + 1).c_str());
    const double back = Number("ds_map_secure_load", {"map.dat"});
    EXPECT_EQ(Encoded(back), json);
    Call("ds_map_destroy", {back});
    EXPECT_EQ(Number("ds_map_secure_load", {"none.dat"}), -1);
    for (const std::string& damaged :
         {whole.substr(0, 80), whole.substr(0, 79), std::string(), "x" + whole.substr(1),
          Forged("[ ]"), Forged("{ \"a\": "), Forged("hello"), whole.substr(0, 80) + "***"}) {
        Put(Saved("map.dat"), damaged);
        EXPECT_EQ(Number("ds_map_secure_load", {"map.dat"}), -1) << damaged;
        EXPECT_EQ(Bytes(Saved("map.dat")), damaged) << "it stays";
    }
    Call("ds_map_secure_save", {99.0, "map.dat"});
    EXPECT_EQ(Encoded(Number("ds_map_secure_load", {"map.dat"})), "{ }") << "no such map";
    EXPECT_EQ(Number("ds_map_secure_save", {map, "../map.dat"}), 0);
    EXPECT_TRUE(Reports().empty());

    const double buffer = Number("buffer_create", {10.0, 1.0, 1.0});
    Call("buffer_seek", {buffer, 0.0, 3.0});
    EXPECT_EQ(Number("ds_map_secure_save_buffer", {map, buffer}), 0);
    Call("buffer_seek", {buffer, 0.0, 3.0});
    EXPECT_EQ(Encoded(Number("ds_map_secure_load_buffer", {buffer})), json);
}

}  // namespace
