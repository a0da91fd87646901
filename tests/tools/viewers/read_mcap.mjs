// Prints the messages of an MCAP file as @mcap/core reads it: topic, time, data. All checksums and
// what the summary says must fit.

import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";

const [folder, file] = process.argv.slice(2);
const require = createRequire(`${folder}/package.json`);
const { McapIndexedReader, McapStreamReader } = require("@mcap/core");
const { crc32 } = require("@foxglove/crc");
const { decompress } = require("fzstd");

const bytes = new Uint8Array(readFileSync(file));
const decompressHandlers = { zstd: (data) => decompress(data) };

const channels = new Map();
const schemas = new Map();
let count = 0;
const stream = new McapStreamReader({ decompressHandlers, validateCrcs: true });
stream.append(bytes);
for (let record; (record = stream.nextRecord()); ) {
    if (record.type === "Schema") {
        assert.equal(record.encoding, "jsonschema");
        JSON.parse(new TextDecoder().decode(record.data));
        schemas.set(record.id, record.name);
    } else if (record.type === "Channel") {
        assert.equal(record.messageEncoding, "json");
        channels.set(record.id, record);
    } else if (record.type === "Message") {
        const channel = channels.get(record.channelId);
        assert.equal(record.publishTime, record.logTime);
        console.log(channel.topic, schemas.get(channel.schemaId), `${record.logTime}`,
                    new TextDecoder().decode(record.data));
        ++count;
    }
}
assert(stream.done(), "the file has no end");

const readable = {
    size: async () => BigInt(bytes.length),
    read: async (offset, size) => bytes.slice(Number(offset), Number(offset + size)),
};
const indexed = await McapIndexedReader.Initialize({ readable, decompressHandlers });
assert.equal(indexed.dataSectionCrc, crc32(bytes.subarray(0, Number(indexed.dataEndOffset))));
assert.equal(indexed.statistics.messageCount, BigInt(count));
assert.equal(indexed.statistics.chunkCount, indexed.chunkIndexes.length);
assert.equal(indexed.channelsById.size, channels.size);
let last = 0n;
for await (const message of indexed.readMessages({ validateCrcs: true })) {
    assert(message.logTime >= last);
    last = message.logTime;
    --count;
}
assert.equal(count, 0, "the indexes lead to another number of messages");
