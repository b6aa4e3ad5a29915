#include "xml/sax/EventProducer.h"

#include "support/HostFixture.h"
#include "xml/sax/EventFilter.h"

#include <gtest/gtest.h>

namespace Quillon::Xml::Sax {
namespace {

using EventProducerTest = Testing::HostFixture;

TEST_F(EventProducerTest, NewProducerHasNoConsumer) {
    EXPECT_EQ(nullptr, EventProducer().getNext());
    EXPECT_EQ(nullptr, EventProducer(nullptr).getNext());
}

TEST_F(EventProducerTest, ConsumerIsKeptAndReplaced) {
    EventFilter first, second;
    EventProducer producer(&first);
    EXPECT_EQ(&first, producer.getNext());
    producer.setNext(&second);
    EXPECT_EQ(&second, producer.getNext());
    producer.setNext(nullptr);
    EXPECT_EQ(nullptr, producer.getNext());
}

} // namespace
} // namespace Quillon::Xml::Sax
