// StatusProcessor: the non-template part of the processor base.
#include "status/status_processor.h"

#include "toolkit/log.h"

StatusProcessor::StatusProcessor(StbAvOpSender& sender)
    : m_InvalidPid(8191), m_Sender(sender), m_Log(stbav::Logger("tevrin.statusProcessor")) {}

StatusProcessor::~StatusProcessor() = default;
