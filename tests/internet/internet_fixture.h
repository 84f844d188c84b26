#pragma once

#include <string>
#include <vector>

#include "internet/mailfrm.h"
#include "requests/request_fixture.h"

namespace tavora {

// The request fixture with the internet request window beside it.
class InternetFixture : public RequestFixture {
  protected:
    InternetFixture() : mail(station, fake.services, pool) {}

    std::filesystem::path newreq() const { return fake.home() / "newreq.tqf"; }

    void write_items(const std::vector<std::string>& items, bool append = false) {
        TextWriter out(newreq(), append ? TextWriter::Mode::Append : TextWriter::Mode::Create);
        for (const std::string& item : items)
            out.write_line(item);
        out.close();
    }

    Mailfrm mail;
};

}  // namespace tavora
