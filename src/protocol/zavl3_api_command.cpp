#include "protocol/zavl3_api_command.h"

#include "foundation/abuffer.h"
#include "foundation/afunctionext.h"

namespace ZAVL3
{

XMLTree APICommand::command_tree(const AString& xid, const AString& name, const XMLTreeList& fields)
{
    XMLTreeList children;
    children.push_back(write_text(tag<"xid">(), xid));
    children.push_back(write_children(name, fields));
    return write_children(tag<"cmd">(), children);
}

void APICommand::send_command(const XMLTree& tree)
{
    command_tap(tree);
    const AMutexLock guard(&send_lock);
    ABuffer buffer(bind<&APICommand::write_bytes>(this));
    tree.write(bind<&ABuffer::append>(&buffer), XMLWriteMode::lines, true);
    buffer.flush();
}

} // namespace ZAVL3
