#pragma once

#include "megset/records/recording/CMEGRecordInfo.h"

#include <memory>
#include <utility>

namespace megset {

/// Gives every field of the base information a value of its own, different from its default.
inline void fillRecordInfo(CMEGRecordInfo& info)
{
    info.m_nRecTotalSample = 1000;
    info.m_nRecPreTrigPts = 100;
    info.m_dRecSampleRate = 600.5;
    info.m_nRawTotalSample = (std::int64_t{1} << 33) + 7;
    info.m_nRawPreTrigPts = 200;
    info.m_dRawSampleRate = 1201.0;
    info.m_bResampleAverage = 1;
    info.m_nResampleFactor = 2;
    int word = 10;
    for (std::int32_t* field :
         {&info.m_nBasicWordA, &info.m_nBasicWordB, &info.m_nBasicWordC,   &info.m_nBasicWordD,  &info.m_nAverageCount,
          &info.m_nBasicWordE, &info.m_nBasicWordF, &info.m_nAcqWordA,     &info.m_nAcqWordB,    &info.m_nAcqWordC,
          &info.m_nAcqWordD,   &info.m_nAcqWordE,   &info.m_nAcqWordF,     &info.m_nDbWordA,     &info.m_nDbWordB,
          &info.m_nDbWordC,    &info.m_nDbWordD,    &info.m_nDbWordE,      &info.m_nDbWordF,     &info.m_nDbWordG,
          &info.m_nDbWordH,    &info.m_nDbWordI,    &info.m_nTailWordRec1, &info.m_nTailWordRec2})
        *field = ++word;
    for (std::int32_t& field : info.m_nTrigWord)
        field = ++word;
    double value = 0.25;
    for (double* field : {&info.m_dBasicValue, &info.m_dFilterWordA, &info.m_dDbValueA, &info.m_dDbValueB,
                          &info.m_dDbValueC, &info.m_dDbValueD})
        *field = value += 1;
    for (double& field : info.m_aFilterValue)
        field = value += 1;
    for (double& field : info.m_dTailValueRec)
        field = value += 1;
    info.m_nDbShort = -300;
    info.m_strAcqTextA = "acquired by";
    info.m_strAcqTextB = "b";
    info.m_strAcqTextC = "c";
    int text = 0;
    for (CString& field : info.m_aAcqText)
        field.Format("acq%d", ++text);
    text = 0;
    for (CString& field : info.m_strDbText)
        field.Format("t%d", ++text);
    auto highPass = std::make_unique<COnlineFilter>();
    highPass->m_nFilterKind = 1;
    highPass->m_dFilterFreq = 0.5;
    highPass->m_nFilterClass = 2;
    highPass->m_nFilterParamCount = 2;
    highPass->m_filterParam = {3.5, 4.5};
    auto notch = std::make_unique<COnlineFilter>();
    notch->m_dFilterFreq = 50;
    notch->m_nFilterParamCount = 7; // announced, but without parameters
    auto lowPass = std::make_unique<COnlineFilter>();
    lowPass->m_nFilterKind = 3;
    lowPass->m_filterParam.emplace(); // present, but empty
    info.m_aOnlineFilter.Add(std::move(highPass));
    info.m_aOnlineFilter.Add(std::move(notch));
    info.m_aOnlineFilter.Add(std::move(lowPass));
}

} // namespace megset
