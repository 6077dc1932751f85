#pragma once

// The three interfaces between the program and the test automation module. They cross a
// library boundary, so they carry only plain C types: texts are NUL-terminated UTF-8 and stay
// owned by the side that passes them.

namespace TestAutomation
{

/// One request as the server received it.
class RPCRequestInterface
{
public:
    virtual ~RPCRequestInterface() {}
    /// The text of argument `key`; null when the request has no such argument. Valid until the
    /// handler returns.
    virtual char const* GetArgument(char const* key) const = 0;
};

/// The answer to one request, filled by the handler.
class RPCReplyInterface
{
public:
    virtual ~RPCReplyInterface() {}
    /// Sets (or replaces) the reply value under `key`. The texts are copied.
    virtual void SetValue(char const* key, char const* value) = 0;
    /// Reports a failure; the first text reported is the one the driver sees.
    virtual void SetError(char const* text) = 0;
    virtual bool HasError() const = 0;
};

/// A request handler: `context` is what was given at registration.
typedef void (*RPCHandler)(void* context, RPCRequestInterface* request, RPCReplyInterface* reply);

/// The server inside the module. Made by `RPCServer_Create`, deleted by the program through the
/// virtual destructor, which closes every connection. All operations run on the caller's thread;
/// handlers run only inside `Poll`.
class RPCServerInterface
{
public:
    virtual ~RPCServerInterface() {}
    /// Starts listening on `port` of the loopback interface. 0 on success, otherwise the error
    /// number of the failed socket call; a started server refuses a second start with -1.
    virtual int Start(char const* name, unsigned short port) = 0;
    /// Serves `method` with `handler`; a second registration of a name replaces the first.
    virtual void RegisterHandler(char const* method, RPCHandler handler, void* context) = 0;
    /// Sends a notice of `kind` with `count` texts to every connected driver.
    virtual void SendNotice(char const* kind, char const* const* texts, unsigned int count) = 0;
    /// Accepts, reads and answers whatever is pending, without waiting.
    virtual void Poll() = 0;
};

/// The module's version; modules of version 3 and below are refused.
typedef unsigned int (*RPCServerVersionFunction)();
typedef RPCServerInterface* (*RPCServerCreateFunction)();

} // namespace TestAutomation
