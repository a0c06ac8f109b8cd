#include "protocol/zavl3_api.h"

namespace ZAVL3
{

API::API() : outstanding(std::make_unique<OutstandingCommands>()) {}

API::~API() = default;

} // namespace ZAVL3
