#include "support/metadata_server.h"

#include "support/await.h"
#include "support/xml_text.h"

#include <array>
#include <deque>
#include <functional>
#include <list>
#include <thread>

#include <asio.hpp>

namespace
{

using asio::ip::tcp;

constexpr std::size_t scan_entries_in_a_reply = 7;

XMLTree child(const XMLTree& tree, const char* name)
{
    XMLTree first;
    tree.count_children(AString(name), &first);
    return first;
}

std::string text_of(const XMLTree& tree, const char* name)
{
    return child(tree, name).get_text().to_utf8();
}

std::string escaped(const std::string& text)
{
    const std::string element = to_xml(XMLTree(AString("x"), utf8(text)));
    return text.empty() ? text : element.substr(3, element.size() - 7);
}

std::string folder_fields(const std::string& folder)
{
    return xml_element("MetadataDatabase", escaped(folder)) + "<MetadataPrefix />";
}

std::string entry(const std::string& key, const std::string& value)
{
    return xml_element("Metadata",
                       xml_element("Key", escaped(key)) + xml_element("Value", escaped(value)));
}

} // namespace

struct MetadataServer::Inside {
    struct Client {
        Client(tcp::socket accepted, std::size_t door_number)
            : socket(std::move(accepted)), door(door_number)
        {
        }

        tcp::socket socket;
        std::size_t door;
        std::array<char, 4096> block{};
        std::string unread;
        std::string outgoing; // under way
        std::string waiting;  // behind it
        std::set<std::string> watched;
        std::set<std::string> scanned;
        Loss next_loss = Loss::now; // or what is to happen at a write
        bool left = false;          // nothing it says counts any more
    };
    using ClientPtr = std::shared_ptr<Client>;

    struct Door {
        explicit Door(asio::io_context& context) : acceptor(context) {}

        ScriptServer finder; // of a free address
        tcp::acceptor acceptor;
        std::map<std::string, std::set<std::string>> missed;
    };

    asio::io_context context;
    asio::executor_work_guard<asio::io_context::executor_type> work{context.get_executor()};
    std::list<Door> doors;
    std::list<ClientPtr> clients;
    std::map<std::string, Table> tables;
    int refusals = 0;
    std::uint64_t writes = 0;
    std::thread thread;

    Door& door(std::size_t number) { return *std::next(doors.begin(), static_cast<long>(number)); }

    // On the server's thread, and waits for it.
    template <typename Function>
    auto run(Function function)
    {
        std::packaged_task<decltype(function())()> task(std::move(function));
        auto result = task.get_future();
        asio::post(context, [&task] { task(); });
        return await(std::move(result));
    }

    void listen(std::size_t number)
    {
        Door& own = door(number);
        const tcp::endpoint endpoint(asio::ip::address_v4(own.finder.address().number), 8913);
        own.acceptor.open(endpoint.protocol());
        own.acceptor.set_option(tcp::acceptor::reuse_address(true));
        own.acceptor.bind(endpoint);
        own.acceptor.listen();
        accept(number);
    }

    void accept(std::size_t number)
    {
        door(number).acceptor.async_accept(
            [this, number](asio::error_code error, tcp::socket socket) {
                if (error) {
                    return; // the door is closed
                }
                socket.set_option(tcp::no_delay(true));
                clients.push_back(std::make_shared<Client>(std::move(socket), number));
                read(clients.back());
                accept(number);
            });
    }

    void read(const ClientPtr& client)
    {
        client->socket.async_read_some(asio::buffer(client->block),
                                       [this, client](asio::error_code error, std::size_t count) {
                                           if (error) {
                                               clients.remove(client);
                                               return;
                                           }
                                           client->unread.append(client->block.data(), count);
                                           take_commands(client);
                                           read(client);
                                       });
    }

    void take_commands(const ClientPtr& client)
    {
        constexpr std::string_view end_tag = "</cmd>";
        for (std::size_t end = 0; (end = client->unread.find(end_tag)) != std::string::npos;) {
            const std::string command = client->unread.substr(0, end + end_tag.size());
            client->unread.erase(0, command.size());
            if (!client->left) {
                take_command(client, parse_xml(command));
            }
        }
    }

    void take_command(const ClientPtr& client, const XMLTree& command)
    {
        const std::string xid = text_of(command, "xid");
        const XMLTree& element = command.get_children().at(1);
        const std::string name = element.get_name().to_utf8();
        const std::string folder = text_of(element, "MetadataDatabase");
        const bool is_set = name == "metadata_set";
        if (is_set || name == "metadata_erase") {
            return take_write(client, xid, is_set, folder, element);
        }
        if (name == "watch_metadata_database") {
            client->watched.insert(folder);
        } else if (name == "unwatch_metadata_database") {
            client->watched.erase(folder);
        } else if (name == "download_metadata") {
            send_scan(client, xid, folder);
        }
        send(client, reply_message(xid, "<ok />"));
    }

    void take_write(const ClientPtr& client, const std::string& xid, bool is_set,
                    const std::string& folder, const XMLTree& element)
    {
        ++writes;
        if (client->next_loss == Loss::before_next_write) {
            return lose(client);
        }
        if (refusals != 0) {
            --refusals;
            return send(client, reply_message(xid, error_content("Not now")));
        }
        if (is_set) {
            const XMLTree metadata = child(child(element, "MetadataList"), "Metadata");
            set(folder, text_of(metadata, "Key"), text_of(metadata, "Value"));
        } else {
            erase(folder, text_of(child(element, "KeyList"), "Key"));
        }
        if (client->next_loss == Loss::behind_next_write) {
            return lose(client);
        }
        send(client, reply_message(xid, "<ok />"));
    }

    void send_scan(const ClientPtr& client, const std::string& xid, const std::string& folder)
    {
        std::string list;
        std::size_t count = 0;
        const auto flush = [&] {
            send(client, reply_message(
                             xid, xml_element("metadata", folder_fields(folder) +
                                                              xml_element("MetadataList", list))));
            list.clear();
            count = 0;
        };
        for (const auto& [key, value] : tables[folder]) {
            list += entry(key, value);
            if (++count == scan_entries_in_a_reply) {
                flush();
            }
        }
        if (count != 0) {
            flush();
        }
        client->scanned.insert(folder);
    }

    void set(const std::string& folder, const std::string& key, const std::string& value)
    {
        tables[folder][key] = value;
        for (Door& each : doors) {
            each.missed[folder].erase(key); // it comes at the latest with the next scan
        }
        tell(folder, "metadata_change", xml_element("MetadataList", entry(key, value)));
    }

    void erase(const std::string& folder, const std::string& key)
    {
        tables[folder].erase(key);
        for (std::size_t number = 0; number < doors.size(); ++number) {
            if (!is_watching(number, folder)) {
                door(number).missed[folder].insert(key);
            }
        }
        tell(folder, "metadata_remove", xml_element("KeyList", xml_element("Key", escaped(key))));
    }

    bool is_watching(std::size_t number, const std::string& folder) const
    {
        return std::any_of(clients.begin(), clients.end(), [&](const ClientPtr& client) {
            return client->door == number && client->watched.count(folder) != 0;
        });
    }

    void tell(const std::string& folder, const char* report, const std::string& fields)
    {
        const std::string message =
            xml_element("report", xml_element(report, folder_fields(folder) + fields));
        for (const ClientPtr& client : clients) {
            if (client->watched.count(folder) != 0) {
                send(client, message);
            }
        }
    }

    void send(const ClientPtr& client, const std::string& message)
    {
        client->waiting += message;
        if (client->outgoing.empty()) {
            write(client);
        }
    }

    void write(const ClientPtr& client)
    {
        client->outgoing = std::exchange(client->waiting, {});
        if (client->outgoing.empty()) {
            return client->left ? say_farewell(client) : void();
        }
        asio::async_write(client->socket, asio::buffer(client->outgoing),
                          [this, client](asio::error_code error, std::size_t) {
                              client->outgoing.clear();
                              if (!error) {
                                  write(client);
                              }
                          });
    }

    // The client reads to the end, and then ends the link itself.
    void lose(const ClientPtr& client)
    {
        if (std::exchange(client->left, true)) {
            return;
        }
        client->watched.clear();
        client->scanned.clear();
        if (client->outgoing.empty()) {
            say_farewell(client);
        }
    }

    static void say_farewell(const ClientPtr& client)
    {
        asio::error_code ignored; // the client may have gone before
        client->socket.shutdown(tcp::socket::shutdown_send, ignored);
    }

    void lose_links(std::size_t number, Loss loss)
    {
        for (const ClientPtr& client : clients) {
            if (client->door == number && !client->left) {
                client->next_loss = loss;
                if (loss == Loss::now) {
                    lose(client);
                }
            }
        }
    }
};

MetadataServer::MetadataServer(std::size_t door_count) : inside(std::make_unique<Inside>())
{
    for (std::size_t number = 0; number < door_count; ++number) {
        Inside::Door& door = inside->doors.emplace_back(inside->context);
        door.finder.stop_listening();
        inside->listen(number);
    }
    inside->thread = std::thread([this] { inside->context.run(); });
}

MetadataServer::~MetadataServer()
{
    inside->context.stop();
    inside->thread.join();
}

std::uint32_t MetadataServer::address(std::size_t door) const
{
    return inside->door(door).finder.address().number;
}

void MetadataServer::set(const std::string& folder, const std::string& key,
                         const std::string& value)
{
    inside->run([&] { inside->set(folder, key, value); });
}

void MetadataServer::erase(const std::string& folder, const std::string& key)
{
    inside->run([&] { inside->erase(folder, key); });
}

MetadataServer::Table MetadataServer::table(const std::string& folder)
{
    return inside->run([&] { return inside->tables[folder]; });
}

std::set<std::string> MetadataServer::missed(std::size_t door, const std::string& folder)
{
    return inside->run([&] { return inside->door(door).missed[folder]; });
}

void MetadataServer::await_scan(std::size_t door, const std::string& folder)
{
    const auto start = std::chrono::steady_clock::now();
    const auto is_scanned = [&] {
        return std::any_of(inside->clients.begin(), inside->clients.end(),
                           [&](const Inside::ClientPtr& client) {
                               return client->door == door && client->scanned.count(folder) != 0;
                           });
    };
    while (!inside->run(is_scanned)) {
        if (std::chrono::steady_clock::now() - start > hang_bound) {
            report_hang("a scan of the whole folder");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

std::uint64_t MetadataServer::writes()
{
    return inside->run([&] { return inside->writes; });
}

void MetadataServer::refuse(int count)
{
    inside->run([&] { inside->refusals = count; });
}

void MetadataServer::lose_links(std::size_t door, Loss loss)
{
    inside->run([&] { inside->lose_links(door, loss); });
}

void MetadataServer::close_door(std::size_t door)
{
    inside->run([&] {
        inside->door(door).acceptor.close();
        inside->lose_links(door, Loss::now);
    });
}

void MetadataServer::open_door(std::size_t door)
{
    inside->run([&] {
        if (!inside->door(door).acceptor.is_open()) {
            inside->listen(door);
        }
    });
}
