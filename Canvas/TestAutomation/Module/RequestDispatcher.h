#pragma once

#include "Canvas/TestAutomation/Module/JsonValue.h"
#include "Canvas/TestAutomation/RPCServerInterface.h"

#include <map>
#include <string>

namespace TestAutomation
{

/// Turns one JSON-RPC 2.0 request line into its reply line by calling the registered handler.
/// The method is the handler's name, the params an object whose members are the request's
/// arguments (strings as they are; numbers and Booleans as their JSON text; null as absent).
/// The reply's result holds the reply keys as strings; a reported error becomes the error
/// object with code `HandlerError` and the error text as the message.
class RequestDispatcher
{
public:
    /// JSON-RPC error codes used in replies.
    enum ErrorCode
    {
        ParseError = -32700,
        InvalidRequest = -32600,
        MethodNotFound = -32601,
        InvalidParams = -32602,
        HandlerError = -32000
    };

    /// `serverName` and the module version answer the built-in method "getServerInfo".
    RequestDispatcher(std::string const& serverName, unsigned int version);

    void SetServerName(std::string const& name) { serverName = name; }
    void Register(std::string const& method, RPCHandler handler, void* context);
    bool IsRegistered(std::string const& method) const { return handlers.count(method) != 0; }

    /// The reply line (without the newline) for `line`; empty for a notification (a request
    /// without "id"), which is still carried out. Never throws on any input.
    std::string Handle(std::string const& line);

    /// A reply line with an error and a null id, for failures found before a request was read.
    static std::string ErrorLine(ErrorCode code, std::string const& message);
    /// The notification line of a notice: method "notice", params {"kind", "texts"}.
    static std::string NoticeLine(char const* kind, char const* const* texts, unsigned int count);

private:
    struct Handler
    {
        RPCHandler function;
        void* context;
    };

    std::string serverName;
    unsigned int version;
    std::map<std::string, Handler> handlers;
};

} // namespace TestAutomation
