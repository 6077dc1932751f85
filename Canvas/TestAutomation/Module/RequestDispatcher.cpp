#include "Canvas/TestAutomation/Module/RequestDispatcher.h"

#include <exception>
#include <string>

#include <unistd.h>

namespace TestAutomation
{

namespace
{

/// The arguments of one request: the params object's members as texts.
class Request : public RPCRequestInterface
{
public:
    explicit Request(Json::Value const* params)
    {
        if (!params)
            return;
        for (auto const& member : params->GetMembers())
        {
            Json::Value const& v = member.second;
            if (v.GetType() == Json::Value::String || v.GetType() == Json::Value::Number)
                arguments[member.first] = v.GetText();
            else if (v.GetType() == Json::Value::Bool)
                arguments[member.first] = v.GetBool() ? "true" : "false";
            else if (v.GetType() != Json::Value::Null)
                arguments[member.first] = Json::Write(v);
        }
    }

    char const* GetArgument(char const* key) const override
    {
        if (!key)
            return nullptr;
        auto it = arguments.find(key);
        return it == arguments.end() ? nullptr : it->second.c_str();
    }

private:
    std::map<std::string, std::string> arguments;
};

class Reply : public RPCReplyInterface
{
public:
    void SetValue(char const* key, char const* value) override
    {
        if (key)
            values.Set(key, Json::Value::MakeString(value ? value : ""));
    }
    void SetError(char const* text) override
    {
        if (!error)
            message = text ? text : "";
        error = true;
    }
    bool HasError() const override { return error; }

    Json::Value values = Json::Value::MakeObject();
    bool error = false;
    std::string message;
};

Json::Value errorObject(int code, std::string const& message)
{
    Json::Value e = Json::Value::MakeObject();
    e.Set("code", Json::Value::MakeNumber(std::to_string(code)));
    e.Set("message", Json::Value::MakeString(message));
    return e;
}

std::string replyLine(Json::Value const& id, char const* key, Json::Value const& body)
{
    Json::Value reply = Json::Value::MakeObject();
    reply.Set("jsonrpc", Json::Value::MakeString("2.0"));
    reply.Set("id", id);
    reply.Set(key, body);
    return Json::Write(reply);
}

} // namespace

RequestDispatcher::RequestDispatcher(std::string const& serverName, unsigned int version)
    : serverName(serverName), version(version)
{
}

void RequestDispatcher::Register(std::string const& method, RPCHandler handler, void* context)
{
    if (handler)
        handlers[method] = Handler{handler, context};
    else
        handlers.erase(method);
}

std::string RequestDispatcher::ErrorLine(ErrorCode code, std::string const& message)
{
    return replyLine(Json::Value(), "error", errorObject(code, message));
}

std::string RequestDispatcher::NoticeLine(char const* kind, char const* const* texts,
                                          unsigned int count)
{
    Json::Value params = Json::Value::MakeObject();
    params.Set("kind", Json::Value::MakeString(kind ? kind : ""));
    Json::Value list = Json::Value::MakeArray();
    for (unsigned int i = 0; texts && i < count; ++i)
        list.Append(Json::Value::MakeString(texts[i] ? texts[i] : ""));
    params.Set("texts", list);
    Json::Value notice = Json::Value::MakeObject();
    notice.Set("jsonrpc", Json::Value::MakeString("2.0"));
    notice.Set("method", Json::Value::MakeString("notice"));
    notice.Set("params", params);
    return Json::Write(notice);
}

std::string RequestDispatcher::Handle(std::string const& line)
{
    Json::Value request;
    std::string why;
    if (!Json::Parse(line, request, why))
        return ErrorLine(ParseError, "Parse error: " + why);
    if (request.GetType() != Json::Value::Object)
        return ErrorLine(InvalidRequest, "Invalid Request: not an object");

    // An id must be a string, a number or null; a request without one gets no reply.
    Json::Value const* idValue = request.Find("id");
    Json::Value const id = idValue ? *idValue : Json::Value();
    bool const wantsReply = idValue != nullptr;
    if (idValue && idValue->GetType() != Json::Value::String &&
        idValue->GetType() != Json::Value::Number && !idValue->IsNull())
        return ErrorLine(InvalidRequest, "Invalid Request: bad id");

    Json::Value const* jsonrpc = request.Find("jsonrpc");
    Json::Value const* method = request.Find("method");
    if (!jsonrpc || jsonrpc->GetType() != Json::Value::String || jsonrpc->GetText() != "2.0" ||
        !method || method->GetType() != Json::Value::String)
        return replyLine(id, "error", errorObject(InvalidRequest, "Invalid Request"));

    Json::Value const* params = request.Find("params");
    if (params && params->GetType() != Json::Value::Object && !params->IsNull())
        return wantsReply ? replyLine(id, "error",
                                      errorObject(InvalidParams, "Invalid params: not an object"))
                          : std::string();
    if (params && params->IsNull())
        params = nullptr;

    Reply reply;
    if (method->GetText() == "getServerInfo")
    {
        reply.SetValue("name", serverName.c_str());
        reply.SetValue("version", std::to_string(version).c_str());
        // A driver tells the program it started from others on the same machine by this.
        reply.SetValue("pid", std::to_string(getpid()).c_str());
    }
    else
    {
        auto it = handlers.find(method->GetText());
        if (it == handlers.end())
            return wantsReply ? replyLine(id, "error",
                                          errorObject(MethodNotFound,
                                                      "Method not found: " + method->GetText()))
                              : std::string();
        Request args(params);
        try
        {
            it->second.function(it->second.context, &args, &reply);
        }
        catch (std::exception const& e)
        {
            reply.SetError((std::string("Request failed: ") + e.what()).c_str());
        }
        catch (...)
        {
            // The program's own exceptions need not derive from std::exception.
            reply.SetError("Request failed");
        }
    }
    if (!wantsReply)
        return std::string();
    if (reply.error)
        return replyLine(id, "error", errorObject(HandlerError, reply.message));
    return replyLine(id, "result", reply.values);
}

} // namespace TestAutomation
