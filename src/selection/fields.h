#pragma once

#include "runtime/value.h"
#include "store/recordset.h"

// Field ordinals of the tables the selection rules read, as the library
// lays them out.

namespace tavora::rec {

inline constexpr int RecID = 0;
inline constexpr int Title = 1;
inline constexpr int Artist = 2;
inline constexpr int Category = 4;
inline constexpr int Type = 5;
inline constexpr int Speed = 6;
inline constexpr int LongTitle = 7;
inline constexpr int Sel = 8;
inline constexpr int TotalRequest = 9;
inline constexpr int MinTime = 11;
inline constexpr int LastPlayed = 12;
inline constexpr int MaxPlayDay = 13;
inline constexpr int HowManyToday = 14;
inline constexpr int MaxPlayWeek = 15;
inline constexpr int HowManyWeek = 16;
inline constexpr int MaxMonth = 17;
inline constexpr int HowManyMonth = 18;
inline constexpr int StartTime1 = 19;
inline constexpr int EndTime1 = 20;
inline constexpr int StartTime2 = 21;
inline constexpr int EndTime2 = 22;
inline constexpr int ValidMonday = 23;  // Monday to Saturday follow, then Sunday at 29
inline constexpr int ValidSunday = 29;
inline constexpr int CDTrack = 30;
inline constexpr int CDOn = 31;  // "On", or "Off" for a track the CD player skips
inline constexpr int AccessDate = 33;
inline constexpr int Size = 37;
inline constexpr int Format = 38;
inline constexpr int Source = 39;
inline constexpr int MixOut = 40;
inline constexpr int T40 = 41;
inline constexpr int C40 = 42;
inline constexpr int D40 = 43;
inline constexpr int AM40 = 44;
inline constexpr int StartVol = 48;
inline constexpr int StartPos = 49;
inline constexpr int EndPos = 50;
inline constexpr int FadeIn = 51;
inline constexpr int FadeOut = 52;
inline constexpr int ScheduleSelect = 54;
inline constexpr int DailyReset = 55;
inline constexpr int WeeklyReset = 56;
inline constexpr int MonthlyReset = 57;
inline constexpr int Length = 58;

}  // namespace tavora::rec

namespace tavora::sched {

inline constexpr int Name = 1;
inline constexpr int Power = 2;
inline constexpr int UsePL = 3;
inline constexpr int DOMALL = 4;
inline constexpr int DOM1 = 5;
inline constexpr int Override = 6;
inline constexpr int DOWALL = 7;
inline constexpr int Mo = 8;  // Tu to Sa follow, then Su at 14
inline constexpr int Su = 14;
inline constexpr int Type1 = 15;
inline constexpr int STime = 16;
inline constexpr int ETime = 17;
inline constexpr int RunNow = 18;

}  // namespace tavora::sched

namespace tavora::weight {

inline constexpr int Category = 1;
inline constexpr int ValidFiles = 2;    // the programming weight
inline constexpr int ExcludeFiles = 3;  // the count of this cycle; 99 is not weighted
inline constexpr double kNotWeighted = 99;

}  // namespace tavora::weight

namespace tavora {

// A copy of a field of the current row: the recordset's own reference
// lasts only until its next call, and the rules compare two fields at once.
inline Value field(Recordset& rows, int ordinal) {
    return rows.Fields(ordinal);
}

}  // namespace tavora
