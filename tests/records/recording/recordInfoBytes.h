#pragma once
// The sections that both records of recording information have, byte by byte, with the values of fillRecordInfo.

#include "tests/kit/ByteBuilder.h"

namespace megset {

inline ByteBuilder rawSection()
{
    return ByteBuilder().i64((std::int64_t{1} << 33) + 7).i64(200).f64(1201.0).i32(1).i64(2);
}

inline ByteBuilder basicWords()
{
    ByteBuilder bytes;
    for (int word = 11; word <= 17; ++word)
        bytes.i32(word);
    return bytes;
}

inline ByteBuilder basicValues()
{
    return ByteBuilder().i64(1000).i64(100).f64(600.5).f64(1.25);
}

inline ByteBuilder acquisitionSection()
{
    ByteBuilder bytes;
    bytes.i32(18).i32(19).i32(20).i32(21).wide("acquired by").wide("b");
    for (const char* text : {"acq1", "acq2", "acq3", "acq4", "acq5", "acq6", "acq7", "acq8", "acq9", "acq10"})
        bytes.wide(text);
    return bytes.i32(22).wide("c").i32(23);
}

inline ByteBuilder filterSection()
{
    ByteBuilder bytes;
    bytes.f64(2.25).doubles({7.25, 8.25, 9.25, 10.25}).i64(3);
    bytes.i32(1).i32(1).f64(0.5).i32(2).i32(2).i32(1).doubles({3.5, 4.5});
    bytes.i32(1).i32(0).f64(50).i32(0).i32(7).i32(0);
    return bytes.i32(1).i32(3).f64(0).i32(0).i32(0).i32(1);
}

inline void addTexts(ByteBuilder& bytes, int first, int last)
{
    for (int number = first; number <= last; ++number) {
        CString text;
        text.Format("t%d", number);
        bytes.wide(text);
    }
}

inline ByteBuilder databaseSection()
{
    ByteBuilder bytes;
    addTexts(bytes, 1, 7);
    bytes.i32(24);
    addTexts(bytes, 8, 11);
    bytes.i32(25);
    addTexts(bytes, 12, 15);
    bytes.i32(26).i32(27);
    addTexts(bytes, 16, 19);
    bytes.i32(28);
    addTexts(bytes, 20, 20);
    bytes.i32(29);
    addTexts(bytes, 21, 36);
    bytes.i32(30);
    addTexts(bytes, 37, 40);
    bytes.f64(3.25).f64(4.25).i32(31).i32(32).f64(5.25).f64(6.25).i16(-300);
    addTexts(bytes, 41, 41);
    return bytes;
}

inline ByteBuilder tail()
{
    return ByteBuilder().i32(33).i32(34).doubles({11.25, 12.25, 13.25, 14.25});
}

} // namespace megset
