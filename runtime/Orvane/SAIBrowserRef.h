#pragma once

#include <Orvane/Export.h>
#include <SAI/SAIBrowserRef.h>

namespace Orvane {

/// Scene access interface to one context. It holds no reference to the context: once that has died, its
/// operations give empty values and false. Owned by the caller.
class ORVANE_API SAIBrowserRef : public SAI::Base::SAIBrowserRef
{
public:
    /// \a context may be null.
    explicit SAIBrowserRef(Context* context);
    SAIBrowserRef(const SAIBrowserRef&) = delete;
    SAIBrowserRef& operator=(const SAIBrowserRef&) = delete;
    ~SAIBrowserRef() override;

    std::string getName() const override;
    std::string getVersion() const override;
    double getCurrentSpeed() const override;
    double getCurrentFrameRate() const override;
    Context* getExecutionContext() const override;
    bool loadURL(const std::vector<std::string>& urls) override;
    void setDescription(const std::string& description) override;
    void print(const std::string& text) override;
    void dispose() override;

    struct Data;

private:
    Data* _data = nullptr;
};

} // namespace Orvane
