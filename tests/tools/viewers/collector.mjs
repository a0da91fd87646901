// Stands in for an OpenTelemetry collector: checks each request against the protocol's own
// definition, and answers as its arguments say, one for each request; later ones are taken.
//   take           200
//   slow           200 after half a second
//   partial        200, but the last three records are rejected
//   reset          the connection ends before an answer
//   SECONDS@STATUS this status, with Retry-After in seconds
//   date@STATUS    this status, with Retry-After as a date, two seconds ahead
//   STATUS         this status
// usage: collector.mjs MODULES PORT [--tls KEY CERTIFICATE] ANSWER…
// Prints the port. At SIGTERM it prints a line for each record taken: SERVICE SCOPE SEVERITY BODY, then
// "rejected N", "gaps N" (the sum that gaps tell) and "wrong TEXT" for each thing that is not right.

import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { createServer } from "node:http";
import { createServer as createSecureServer } from "node:https";
import { createRequire } from "node:module";

const [modules, port, ...rest] = process.argv.slice(2);
const tls = rest[0] === "--tls" ? rest.splice(0, 3) : undefined;
const answers = rest;
const require = createRequire(`${modules}/package.json`);
const protobuf = require("protobufjs");

const protos = `${modules}/node_modules/@opentelemetry/otlp-grpc-exporter-base/build/protos`;
const root = new protobuf.Root();
root.resolvePath = (_, path) => `${protos}/${path}`;
root.loadSync("opentelemetry/proto/collector/logs/v1/logs_service.proto");
const Request = root.lookupType("opentelemetry.proto.collector.logs.v1.ExportLogsServiceRequest");

const lines = [];
const wrong = [];
let rejected = 0;
let gaps = 0;
let again; // the body that must come again
let notBefore = 0;

// A member that the definition does not have is lost on the way to a message and back, and one of
// another type comes back as another one.
function check(request) {
    assert.equal(request.headers["content-type"], "application/json");
    assert.equal(request.headers["x-token"], "a b");
    assert.equal(`${request.method} ${request.url}`, "POST /v1/logs");
    assert(Date.now() >= notBefore, "came before the time that Retry-After has told");
    assert(again === undefined || again === request.body, "not the same request again");
    const json = JSON.parse(request.body);
    assert.equal(Request.verify(Request.fromObject(json)), null);
    const bytes = Request.encode(Request.fromObject(json)).finish();
    assert.deepEqual(Request.toObject(Request.decode(bytes), { longs: String }), json);
    return json;
}

const valueOf = (attributes, key) => attributes.find((each) => each.key === key)?.value;

function take(json, count) {
    for (const { resource, scopeLogs } of json.resourceLogs) {
        for (const { scope, logRecords } of scopeLogs) {
            for (const record of logRecords) {
                const gap = valueOf(record.attributes, "orvane.given_up");
                if (gap) {
                    gaps += Number(gap.intValue);
                } else if (count-- > 0) {
                    const service = valueOf(resource.attributes, "service.name").stringValue;
                    lines.push([service, scope?.name ?? "-", record.severityNumber,
                                record.body.stringValue].join(" "));
                }
            }
        }
    }
}

function answer(request, response) {
    const json = check(request);
    const size = json.resourceLogs.flatMap((each) => each.scopeLogs)
        .flatMap((each) => each.logRecords)
        .filter((each) => !valueOf(each.attributes, "orvane.given_up")).length;
    const [, pause, status] = /^(?:(.*)@)?(.*)$/.exec(answers.shift() ?? "take");
    again = undefined;
    if (status === "reset") {
        again = request.body;
        request.socket.destroy();
    } else if (status === "take" || status === "slow") {
        take(json, size);
        setTimeout(() => response.end("{}"), status === "slow" ? 500 : 0);
    } else if (status === "partial") {
        take(json, size - 3);
        rejected += 3;
        response.end('{"partialSuccess":{"rejectedLogRecords":"3","errorMessage":"too old"}}');
    } else if (/^(429|50[234])$/.test(status)) {
        again = request.body;
        if (pause === "date") {
            // Dates have no parts of a second.
            const date = Math.floor(Date.now() / 1000) * 1000 + 2000;
            notBefore = date - 1000;
            response.setHeader("Retry-After", new Date(date).toUTCString());
        } else if (pause) {
            notBefore = Date.now() + Number(pause) * 1000;
            response.setHeader("Retry-After", pause);
        }
        response.writeHead(Number(status)).end();
    } else {
        rejected += size;
        response.writeHead(Number(status)).end('{"code":3,"message":"not like this"}');
    }
}

function receive(request, response) {
    const parts = [];
    request.on("data", (part) => parts.push(part));
    request.on("end", () => {
        request.body = Buffer.concat(parts).toString();
        try {
            answer(request, response);
        } catch (error) {
            wrong.push(error.message);
            response.writeHead(400).end();
        }
    });
}

const server = tls ? createSecureServer({ key: readFileSync(tls[1]), cert: readFileSync(tls[2]) }, receive)
                   : createServer(receive);
server.listen(Number(port), "127.0.0.1", () => console.log(server.address().port));
process.on("SIGTERM", () => {
    for (const line of lines) console.log(line);
    console.log(`rejected ${rejected}`);
    console.log(`gaps ${gaps}`);
    for (const text of wrong) console.log(`wrong ${text}`);
    process.exit(0);
});
