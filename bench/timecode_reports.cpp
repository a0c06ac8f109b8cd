#include "timecode_reports.h"

#include <fmt/format.h>

#include <iterator>

namespace
{

constexpr const char* report_format = "<report>\r\n"
                                      "\t<channel_timecode>\r\n"
                                      "\t\t<Channel>{0}</Channel>\r\n"
                                      "\t\t<ClipPosition>{1}</ClipPosition>\r\n"
                                      "\t\t<DisplayTimecode>\r\n"
                                      "\t\t\t<Valid>true</Valid>\r\n"
                                      "\t\t\t<VideoStandard>1080_50i</VideoStandard>\r\n"
                                      "\t\t\t<FieldNumber>{1}</FieldNumber>\r\n"
                                      "\t\t\t<DropFrameFlag>ndf</DropFrameFlag>\r\n"
                                      "\t\t</DisplayTimecode>\r\n"
                                      "\t\t<InputTimecode>\r\n"
                                      "\t\t\t<Valid>true</Valid>\r\n"
                                      "\t\t\t<VideoStandard>1080_50i</VideoStandard>\r\n"
                                      "\t\t\t<FieldNumber>{1}</FieldNumber>\r\n"
                                      "\t\t\t<DropFrameFlag>ndf</DropFrameFlag>\r\n"
                                      "\t\t</InputTimecode>\r\n"
                                      "\t</channel_timecode>\r\n"
                                      "</report>\r\n";

} // namespace

void append_timecode_report(std::string& text, char channel, std::uint32_t position)
{
    fmt::format_to(std::back_inserter(text), fmt::runtime(report_format), channel, position);
}
